// Removing folders from within signal handlers: system calls only, no memory, no locks.
#ifndef KVO_GUARD_FOLDER_REMOVAL_H
#define KVO_GUARD_FOLDER_REMOVAL_H

namespace kvo {

// Is this the name of a temporary folder: "kvo-", "kvo-cgns-" or ".kvo-model-", a process's number, "-", six letters or
// digits? Writes the number.
bool isTemporaryName(const char* name, long& process);

// Removes the folder `name` in the open folder `parent` with all that is in it, without following links. Leaves a
// folder alone in which an older model lies that its writer has moved aside.
bool removeFolder(int parent, const char* name);

// Removes the temporary folders and the unfinished output files that this process has open: each folder keeps a lock on
// its own, so it is among the open files, which /proc lists.
void removeOwnFolders();

} // namespace kvo

#endif
