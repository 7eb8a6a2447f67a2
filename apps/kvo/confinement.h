// --confine: for decks, models and sessions that somebody else has written.
#ifndef KVO_CONFINEMENT_H
#define KVO_CONFINEMENT_H

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace kvo {

struct Session;

// A folder outside of which nothing is read or written; none: everything may be.
class Confinement
{
public:
    // Throws UsageError for what is no folder.
    explicit Confinement(const std::string& folder);

    // "" without one.
    const std::string& root() const { return folder; }

    // Throws ProgramError for the first of these files that lies elsewhere, links resolved. "" is no file, and what the
    // shell has opened for the program ("-", /dev/fd/N) is its user's choice.
    void check(const std::vector<std::string>& files) const;

    // The files that a session reads and writes.
    void checkSession(const Session& session) const;

    // Everything in a model directory.
    void checkModel(const std::string& directory) const;

private:
    std::string folder;
};

void addConfineOption(CLI::App& command, std::string& folder);

} // namespace kvo

#endif
