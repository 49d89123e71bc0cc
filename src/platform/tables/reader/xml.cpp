#include "xml.h"

#include "../table.h"

#include <charconv>
#include <exception>
#include <expat.h>

namespace tables {
namespace {

std::string_view withoutPrefix(std::string_view name) {
    const std::size_t colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

/// A parser and what its calls need; no exception passes through expat.
struct Parse {
    std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser{XML_ParserCreate(nullptr),
                                                                   &XML_ParserFree};
    XmlHandler& handler;
    std::exception_ptr failure{};

    template <typename Call>
    void run(Call&& call) {
        if (failure) return;
        try {
            call();
            if (!handler.enough()) return;
        } catch (...) {
            failure = std::current_exception();
        }
        XML_StopParser(parser.get(), XML_FALSE);
    }
};

Parse& of(void* data) {
    return *static_cast<Parse*>(data);
}

void opened(void* data, const char* name, const char** attributes) {
    of(data).run([&] { of(data).handler.open(withoutPrefix(name), Attributes(attributes)); });
}
void closed(void* data, const char* name) {
    of(data).run([&] { of(data).handler.close(withoutPrefix(name)); });
}
void characters(void* data, const char* text, int length) {
    of(data).run([&] { of(data).handler.text({text, static_cast<std::size_t>(length)}); });
}
void entity(void* data, const char*, int, const char*, int, const char*, const char*, const char*,
            const char*) {
    of(data).run([] { throw Unreadable("The file declares XML entities, as no spreadsheet program does"); });
}

} // namespace

std::string_view Attributes::local(std::string_view name) const {
    for (const char** pair = m_pairs; *pair != nullptr; pair += 2)
        if (withoutPrefix(*pair) == name) return pair[1];
    return {};
}

std::string_view Attributes::whole(std::string_view name) const {
    for (const char** pair = m_pairs; *pair != nullptr; pair += 2)
        if (*pair == name) return pair[1];
    return {};
}

int Attributes::number(std::string_view text, int otherwise, int most) {
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = result.ec == std::errc() && result.ptr == text.data() + text.size();
    return whole && value >= 0 && value <= most ? value : otherwise;
}

bool parseXml(Parts& parts, const std::string& name, XmlHandler& handler) {
    Parse parse{.handler = handler};
    XML_Parser parser = parse.parser.get();
    XML_SetUserData(parser, &parse);
    XML_SetElementHandler(parser, opened, closed);
    XML_SetCharacterDataHandler(parser, characters);
    XML_SetEntityDeclHandler(parser, entity);
    const auto feed = [&](std::string_view piece, bool last) {
        const auto status = XML_Parse(parser, piece.data(), static_cast<int>(piece.size()), last);
        if (parse.failure) std::rethrow_exception(parse.failure);
        if (handler.enough()) return false;
        if (status == XML_STATUS_ERROR)
            throw Unreadable(name + " is damaged in its line " +
                             std::to_string(XML_GetCurrentLineNumber(parser)) + ": " +
                             XML_ErrorString(XML_GetErrorCode(parser)));
        return true;
    };
    bool goesOn = true;
    if (!parts.read(name, [&](std::string_view piece) { return goesOn = feed(piece, false); })) return false;
    if (goesOn) feed({}, true);
    return true;
}

} // namespace tables
