// What the commands read and write, told to FileRoles before anything is drawn or written.
#ifndef KVO_FILE_CHECKS_H
#define KVO_FILE_CHECKS_H

#include <string>

#include "file_roles.h"

namespace kvo {

class ModelSource;
struct SceneSetup;
struct Session;

// The picture's name that stands for standard output.
constexpr const char standardOutputName[] = "-";

// A file that a command line option names; "" for none. Also looks whether it can be written (output_file.h).
void addOutput(FileRoles& roles, const std::string& path, const std::string& option);

// Throws UsageError for a picture whose name ends as pictures of another format do.
void checkPictureName(const std::string& file, const std::string& option);

// As addOutput, for the picture of the command line: "-" is standard output. Throws UsageError when that is a terminal,
// and when the session prints there, too.
void addPicture(FileRoles& roles, const std::string& path, const Session& session);

// The session file, and what its lines read and write. A line may write again what a line of its kind wrote before it,
// and read it. Throws ProgramError, "FILE:LINE: what".
void addSession(FileRoles& roles, const Session& session, const std::string& what);

// The session of a scene, and the view state that it begins with unless it is the one that is saved at the end.
void addScene(FileRoles& roles, const SceneSetup& scene, bool withState = true);

// The files of a model directory; a deck and those that it includes.
void addModel(FileRoles& roles, const ModelSource& source);

} // namespace kvo

#endif
