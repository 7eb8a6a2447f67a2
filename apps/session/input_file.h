// Reading small files that a user names: sessions, view states, deck.json.
#ifndef KVO_SESSION_INPUT_FILE_H
#define KVO_SESSION_INPUT_FILE_H

#include <string>

namespace kvo {

// The whole file, or its first most + 1 bytes, by which the caller knows one that is too long. Throws ProgramError for
// what cannot be read and for all that is no regular file: pipes may never answer, devices never end. what: "a session
// file".
std::string readInputFile(const std::string& path, const std::string& what, std::size_t most);

} // namespace kvo

#endif
