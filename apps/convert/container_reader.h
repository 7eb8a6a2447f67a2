// The readers of containers. Each fills a neutral mesh (mesh.h) and returns it finished; what cannot be read is an
// ImportError whose message begins with the file. A damaged file can make the libraries below crash: callers read in a
// child process (isolated.h).
#ifndef KVO_CONVERT_CONTAINER_READER_H
#define KVO_CONVERT_CONTAINER_READER_H

#include <string>

#include "container.h"
#include "import_log.h"
#include "mesh.h"

namespace kvo {

Mesh readCgns(const std::string& path, ImportLog& log);
Mesh readExodus(const std::string& path, ImportLog& log);
Mesh readMed(const std::string& path, ImportLog& log);

// As the given format, or as what the file's content is if it is null.
Mesh readContainer(const std::string& path, const ContainerFormat* format, ImportLog& log);

} // namespace kvo

#endif
