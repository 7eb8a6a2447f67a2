// Which folders a model may take the place of: a mistyped name must not cost a user's files. Private to readgen/.
#ifndef REPLACEABLE_H
#define REPLACEABLE_H

#include <string>
#include <vector>

namespace readgen {

// Throws CannotWrite unless each folder dirName/name is not there, is empty, or belongs with all that is in it to the
// model dirName/modelName: the model's own folder and those of the files that its part_start lists.
void checkReplaceable(const std::string& dirName, const std::string& modelName, const std::vector<std::string>& names);

} // namespace readgen

#endif
