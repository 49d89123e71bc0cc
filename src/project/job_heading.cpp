#include "job_heading.h"

#include "basic/strings.h"

#include <algorithm>
#include <vector>

namespace project {

namespace {

constexpr const char* table = "Job";
constexpr const char* keyField = "Key";
constexpr const char* valueField = "Value";

bool hasTable(const dao::Database& database) {
    return std::ranges::any_of(database.TableNames(),
                               [](const std::string& name) { return basic::sameText(name, table); });
}

bool isText(const dao::Field& field, const char* name) {
    return basic::sameText(field.Name(), name) && field.Type() == dao::DataType::Text;
}

bool isOurs(dao::Recordset& job) {
    if (job.FieldCount() != 2) return false;
    const dao::Field first = job.Fields(0);
    const dao::Field second = job.Fields(1);
    return isText(first, keyField) && isText(second, valueField);
}

/// Calls `each` with the place of the key of every record that belongs to a heading.
template <typename Each>
void forRecords(dao::Recordset& job, Each&& each) {
    if (job.RecordCount() == 0) return;
    for (job.MoveFirst(); !job.EOF_(); job.MoveNext())
        if (const auto key = sheet::Heading::find(dao::toText(job.Fields(keyField).value()))) each(*key);
}

} // namespace

sheet::Heading readHeading(dao::Database& database) {
    sheet::Heading heading;
    if (!hasTable(database)) return heading;
    dao::Recordset job = database.OpenRecordset(table);
    if (!isOurs(job)) return heading;
    forRecords(job,
               [&](std::size_t key) { heading.setText(key, dao::toText(job.Fields(valueField).value())); });
    return heading;
}

bool writeHeading(dao::Database& database, const sheet::Heading& heading) {
    if (!hasTable(database)) {
        if (heading.empty()) return true;
        database.Execute("create table Job (Key Text(50) primary key, Value Text(255))");
    }
    dao::Recordset job = database.OpenRecordset(table);
    if (!isOurs(job)) return heading.empty();
    std::array<bool, sheet::Heading::keys.size()> there{};
    forRecords(job, [&](std::size_t key) {
        there[key] = true;
        const std::string& text = heading.text(key);
        if (text.empty()) {
            job.Delete();
        } else if (dao::toText(job.Fields(valueField).value()) != text) {
            job.Edit();
            job.Fields(valueField).setValue(text);
            job.Update();
        }
    });
    for (std::size_t key = 0; key < there.size(); ++key) {
        if (there[key] || heading.text(key).empty()) continue;
        job.AddNew();
        job.Fields(keyField).setValue(sheet::Heading::keys[key]);
        job.Fields(valueField).setValue(heading.text(key));
        job.Update();
    }
    return true;
}

} // namespace project
