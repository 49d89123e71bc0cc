#pragma once

#include "dao/dao.h"

#include "jet/database.h"
#include "jet/schema_text.h"

#include <string>
#include <vector>

/// A small road database as the tests want it.
constexpr const char* roadSchema = R"(
table CSect
    Chn   Text(25)
    Side  Text(1)
    Oft   Double
    Grl   Single
    calc  YesNo
    primary key CSO (Chn, Side, Oft)

table LSect
    Chn   Text(25)
    Frl   Single
    primary key Chn (Chn)

table dddd
    dddd  Text(255) zero-length
)";

inline std::string makeDatabase(const std::string& path, const char* schema = roadSchema,
                                const std::string& password = "TarnVel") {
    jet::CreateOptions options;
    options.password = password;
    jet::Database database = jet::Database::create(path, options);
    jet::createTables(database, jet::parseSchema(schema));
    database.commit();
    return path;
}

inline void addPoint(dao::Recordset& section, const char* chainage, const char* side, double offset) {
    section.AddNew();
    section.Fields("Chn").setValue(chainage);
    section.Fields("side").setValue(side);
    section.Fields("OFT").setValue(offset);
    section.Update();
}

/// The texts of one field, from the first record to the last.
inline std::vector<std::string> column(dao::Recordset& records, const char* field) {
    std::vector<std::string> texts;
    if (records.RecordCount() == 0) return texts;
    for (records.MoveFirst(); !records.EOF_(); records.MoveNext())
        texts.push_back(dao::toText(records.Fields(field).value()));
    return texts;
}
