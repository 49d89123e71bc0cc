#include "heading_command.h"

#include "basic/files.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "dao/dao.h"
#include "project/job_heading.h"
#include "project/project_file.h"

#include <ostream>

namespace cli {

ExitStatus heading(const HeadingOptions& options, std::ostream& out, std::ostream& err) {
    using sheet::Heading;
    std::vector<std::pair<std::size_t, std::string>> changes;
    for (const std::string& text : options.texts) {
        const std::size_t sign = text.find('=');
        const auto key = Heading::find(std::string_view(text).substr(0, sign));
        if (sign == std::string::npos || !key) {
            err << "zavrogrl-cli: " << text << ": not KEY=VALUE with one of the keys";
            for (const char* each : Heading::keys)
                err << ' ' << each;
            err << '\n';
            return WrongUsage;
        }
        if (basic::length(text.substr(sign + 1)) > Heading::longest) {
            return fail(err, Heading::keys[*key],
                        "longer than " + std::to_string(Heading::longest) + " characters");
        }
        changes.emplace_back(*key, text.substr(sign + 1));
    }
    try {
        dao::Database database = dao::OpenDatabase(basic::nativePath(options.book), project::connect);
        (void)database.OpenRecordset("Grl"); // a field book, else nothing is written
        Heading all = project::readHeading(database);
        if (!changes.empty()) {
            for (const auto& [key, text] : changes)
                all.setText(key, text);
            if (!project::writeHeading(database, all))
                return fail(err, options.book, "its table Job is not one of this program");
            database.Close();
        }
        for (std::size_t key = 0; key < Heading::keys.size(); ++key)
            if (!all.text(key).empty()) out << Heading::keys[key] << '=' << all.text(key) << '\n';
        return flushed(out, err);
    } catch (const basic::RuntimeError& error) {
        return fail(err, options.book, error);
    }
}

} // namespace cli
