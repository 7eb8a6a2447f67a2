// Import logs through a pipe.
#include "log_report.h"

#include <nlohmann/json.hpp>

namespace kvo {

namespace {

using Json = nlohmann::json;

// Names of decks may be in any encoding; what is no UTF-8 is replaced.
std::string textOf(const Json& json)
{
    return printableJson(json.dump(-1, ' ', false, Json::error_handler_t::replace)) + "\n";
}

// The place of an entry comes as text, which is either "FILE" or "FILE:LINE": it goes on as the file.
void addReport(const Json& report, ImportLog& log)
{
    for (const Json& kind : report.at("warnings")) {
        const std::string name = kind.at("kind").get<std::string>();
        const std::uint64_t count = kind.at("count").get<std::uint64_t>();
        std::uint64_t told = 0;
        for (const Json& line : kind.at("lines")) {
            log.warn(name, {}, line.get<std::string>());
            ++told;
        }
        if (count > told) {
            log.warnMore(name, count - told);
        }
    }
    for (const Json& note : report.at("notes")) {
        log.note(note.get<std::string>());
    }
    for (const Json& list : report.at("lists")) {
        for (const Json& entry : list.at("entries")) {
            log.count(list.at("title").get<std::string>(), entry.at("name").get<std::string>(),
                      entry.at("count").get<std::uint64_t>(), {entry.at("place").get<std::string>(), 0});
        }
    }
}

} // namespace

std::string logReport(const ImportLog& log)
{
    Json report = {{"warnings", Json::array()}, {"notes", log.notes()}, {"lists", Json::array()}};
    for (const ImportLog::Warnings& kind : log.warnings()) {
        report["warnings"].push_back({{"kind", kind.kind}, {"count", kind.count}, {"lines", kind.lines}});
    }
    for (const ImportLog::List& list : log.lists()) {
        Json entries = Json::array();
        for (const ImportLog::Entry& entry : list.entries) {
            entries.push_back({{"name", entry.name}, {"count", entry.count}, {"place", entry.firstPlace}});
        }
        report["lists"].push_back({{"title", list.title}, {"entries", entries}});
    }
    return textOf(report);
}

std::string errorReport(const std::string& message)
{
    return textOf({{"error", message}});
}

void readLogReport(const std::string& text, ImportLog& log)
{
    const Json report = Json::parse(text, nullptr, false);
    if (report.is_object() && report.contains("error") && report.at("error").is_string()) {
        throw ImportError({}, report.at("error").get<std::string>());
    }
    try {
        addReport(report, log);
    } catch (const Json::exception&) {
        throw ImportError({}, "the report of the conversion cannot be read");
    }
}

} // namespace kvo
