// Walking through a command line, and distances between words.
#include "command_words.h"

#include <algorithm>
#include <cctype>
#include <map>

#include <CLI/CLI.hpp>

#include "program_error.h"

namespace kvo {

namespace {

// How many letters must be put in, left out, replaced or exchanged with their neighbour.
std::size_t distanceBetween(const std::string& a, const std::string& b)
{
    std::vector<std::vector<std::size_t>> steps(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                steps[i][j] = i + j;
                continue;
            }
            const bool same = a[i - 1] == b[j - 1];
            steps[i][j] = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, steps[i - 1][j - 1] + (same ? 0u : 1u)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
            }
        }
    }
    return steps[a.size()][b.size()];
}

// "; did you mean --hide?", "; did you mean --a, --b or --c?", or nothing.
std::string suggest(const std::string& word, const std::vector<std::string>& known)
{
    const std::vector<std::string> similar = similarWords(word, known);
    std::string out;
    for (std::size_t k = 0; k < similar.size(); ++k) {
        out += (k == 0 ? "; did you mean " : k + 1 < similar.size() ? ", " : " or ") + similar[k];
    }
    return out.empty() ? out : out + "?";
}

// A command's options, also those of its groups, by all their names.
std::map<std::string, const CLI::Option*> optionsOf(const CLI::App& command)
{
    std::map<std::string, const CLI::Option*> out;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            out["--" + name] = option;
        }
        for (const std::string& name : option->get_snames()) {
            out["-" + name] = option;
        }
    }
    for (const CLI::App* group : command.get_subcommands([](const CLI::App* app) { return app->get_name().empty(); })) {
        for (const auto& entry : optionsOf(*group)) {
            out.insert(entry);
        }
    }
    return out;
}

bool isOption(const std::string& word)
{
    return word.size() > 1 && word[0] == '-' && word[1] != '.' &&
           !std::isdigit(static_cast<unsigned char>(word[1])); // "-5" is a number
}

// An option as it is written: "--size 80x60", "--size=80x60", "-o out.png", "-oout.png".
struct WrittenOption
{
    std::string name;
    std::string value;
    bool attached = false; // the value is part of the word

    explicit WrittenOption(const std::string& word)
    {
        const bool isLong = word.compare(0, 2, "--") == 0;
        const std::size_t end = isLong ? std::min(word.find('='), word.size()) : 2;
        name = word.substr(0, end);
        attached = end < word.size();
        value = attached ? word.substr(isLong ? end + 1 : end) : "";
    }
};

void checkValue(const CLI::Option& option, const std::string& name, const std::string& value)
{
    if (value.empty()) {
        throw UsageError(name + ": the value is empty");
    }
    const char comma = option.get_delimiter();
    if (comma != '\0' &&
        (value.front() == comma || value.back() == comma || value.find(std::string(2, comma)) != std::string::npos)) {
        throw UsageError(name + ": \"" + value + "\" has an empty entry");
    }
}

class CommandWords
{
public:
    explicit CommandWords(const CLI::App& app) : command(app), options(optionsOf(app)) {}

    void check(std::vector<std::string>::const_iterator at, std::vector<std::string>::const_iterator end)
    {
        for (; at != end && *at != "--"; ++at) {
            if (at->empty()) {
                throw UsageError("a word of the command line is empty");
            }
            if (!isOption(*at)) {
                continue;
            }
            const WrittenOption written(*at);
            const CLI::Option& option = known(written);
            if (option.get_items_expected_max() == 0) {
                continue; // a flag
            }
            noteUse(option, written.name);
            if (written.name.size() == 2 && !written.value.empty() && written.value[0] == '=') {
                throw UsageError(*at + ": write " + written.name + " " + written.value.substr(1));
            }
            if (!written.attached && at + 1 == end) {
                throw UsageError(written.name + " needs a value");
            }
            checkValue(option, written.name, written.attached ? written.value : *++at);
        }
    }

private:
    const CLI::Option& known(const WrittenOption& written) const
    {
        const auto found = options.find(written.name);
        if (found != options.end()) {
            return *found->second;
        }
        std::vector<std::string> names;
        for (const auto& entry : options) {
            names.push_back(entry.first);
        }
        const bool isLong = written.name.compare(0, 2, "--") == 0;
        const std::string whole = isLong ? written.name : written.name + written.value; // "-size" for "--size"
        const std::string similar = suggest(whole, names);
        throw UsageError("unknown option " + whole +
                         (similar.empty() ? "; see " + std::string(command.get_parent() ? "kvo " : "") +
                                                command.get_name() + " --help"
                                          : similar));
    }

    // Options that take one value stand once.
    void noteUse(const CLI::Option& option, const std::string& name)
    {
        const bool one =
            option.get_items_expected_max() == 1 && option.get_multi_option_policy() == CLI::MultiOptionPolicy::Throw;
        if (++uses[&option] > 1 && one) {
            throw UsageError(name + " is given more than once");
        }
    }

    const CLI::App& command;
    const std::map<std::string, const CLI::Option*> options;
    std::map<const CLI::Option*, int> uses;
};

} // namespace

std::vector<std::string> similarWords(const std::string& word, const std::vector<std::string>& known)
{
    std::vector<std::pair<std::size_t, std::string>> found;
    const std::size_t letters = word.size() - std::min(word.find_first_not_of('-'), word.size());
    for (const std::string& candidate : known) {
        const bool begun = letters > 2 && candidate.compare(0, word.size(), word) == 0;
        const std::size_t distance = begun ? 1 : distanceBetween(word, candidate);
        // A word of a few letters is similar to many.
        if (distance <= (letters + 1) / 3 && distance < letters) {
            found.emplace_back(distance, candidate);
        }
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> out;
    for (const auto& entry : found) {
        if (out.size() < 4 && entry.first == found[0].first) {
            out.push_back(entry.second);
        }
    }
    return out;
}

void checkWords(const CLI::App& program, const std::vector<std::string>& words)
{
    auto at = words.begin();
    const std::vector<const CLI::App*> commands = program.get_subcommands([](const CLI::App*) { return true; });
    if (at == words.end() || isOption(*at)) {
        return CommandWords(program).check(at, words.end()); // --help, --version
    }
    std::vector<std::string> names;
    for (const CLI::App* command : commands) {
        if (command->get_name() == *at) {
            return CommandWords(*command).check(at + 1, words.end());
        }
        names.push_back(command->get_name());
    }
    const std::string similar = suggest(*at, names);
    throw UsageError("unknown command " + (at->empty() ? "\"\"" : *at) +
                     (similar.empty() ? "; see kvo --help" : similar));
}

} // namespace kvo
