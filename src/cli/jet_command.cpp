#include "jet_command.h"

#include "book_file.h"

#include "basic/files.h"
#include "basic/runtime_error.h"

#include "jet/check.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/schema_text.h"

#include <ostream>

namespace cli {
namespace {

/// All tables carry the day that stands in the header of new files, so that the same schema makes the same
/// bytes.
constexpr double dateOfTables = 42329; // 2015-11-21

/// Runs a command; what it throws is said with the file's name.
template <typename Command>
ExitStatus guarded(const JetOptions& options, std::ostream& err, Command command) {
    try {
        return command();
    } catch (const jet::Error& error) {
        const bool missing = error.kind() == jet::ErrorKind::WrongPassword && options.password.empty();
        return fail(err, options.file,
                    missing ? "the file has a password; --password is missing" : error.text());
    } catch (const basic::RuntimeError& error) {
        return fail(err, options.file, error);
    }
}

jet::Schema schemaAt(const std::string& path, std::istream& in) {
    const std::string text = textOf(path, in);
    try {
        return jet::parseSchema(text);
    } catch (const jet::Error& error) {
        throw basic::RuntimeError(basic::InvalidProcedureCall, error.text(), path);
    }
}

jet::Database openToRead(const JetOptions& options) {
    return jet::Database::open(basic::nativePath(options.file), options.password, jet::OpenMode::ReadOnly);
}

} // namespace

ExitStatus jetSchema(const JetOptions& options, std::ostream& out, std::ostream& err) {
    return guarded(options, err, [&] {
        jet::Database database = openToRead(options);
        jet::Schema schema = jet::schemaOf(database);
        if (!options.table.empty()) {
            const std::string name = database.table(options.table).name();
            std::erase_if(schema.tables, [&](const jet::TableDesign& table) { return table.name != name; });
        }
        return flushed(out << jet::schemaText(schema), err);
    });
}

ExitStatus jetDump(const JetOptions& options, std::ostream& out, std::ostream& err) {
    return guarded(options, err, [&] {
        jet::Database database = openToRead(options);
        if (!options.table.empty()) {
            dumpTable(database.table(options.table), options.form, out);
        } else {
            bool first = true;
            for (const std::string& name : database.tableNames()) {
                if (!first) out << '\n';
                if (options.form == DumpForm::Csv) out << "# " << name << '\n';
                first = false;
                dumpTable(database.table(name), options.form, out);
            }
        }
        return flushed(out, err);
    });
}

ExitStatus jetCheck(const JetOptions& options, std::ostream& out, std::ostream& err) {
    return guarded(options, err, [&] {
        jet::Database database = openToRead(options);
        const auto level = options.strict ? jet::CheckLevel::Strict : jet::CheckLevel::Normal;
        std::vector<std::string> notes;
        const std::vector<std::string> faults = jet::check(database, level, &notes);
        for (const std::string& fault : faults)
            out << fault << '\n';
        for (const std::string& note : notes)
            out << "note: " << note << '\n';
        return flushed(out, err, faults.empty() ? Done : Failed);
    });
}

ExitStatus jetCreate(const JetOptions& options, std::istream& in, std::ostream& err) {
    return guarded(options, err, [&] {
        const jet::Schema schema = schemaAt(options.schema, in);
        jet::CreateOptions create;
        create.password = options.password.empty() ? schema.password : options.password;
        jet::Database database = jet::Database::create(basic::nativePath(options.file), create);
        database.setClock([] { return jet::DateTime{dateOfTables}; });
        jet::createTables(database, schema);
        database.commit();
        return Done;
    });
}

} // namespace cli
