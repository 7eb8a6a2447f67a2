// A host's own model reader: one shell part, whatever the directory holds.
#ifndef OWN_READER_H
#define OWN_READER_H

namespace ownreader {
extern int calls; // of any member below, and of compareIDs
const unsigned int partId = 77;
} // namespace ownreader

#endif
