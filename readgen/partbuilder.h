// Building part records from a part table and the nodes of the model. Private to readgen/.
#ifndef PARTBUILDER_H
#define PARTBUILDER_H

#include <cstddef>
#include <vector>

#include "modelfile.h"
#include "modelnodes.h"
#include "partstr.h"

namespace readgen {

// Part records under construction; releases what they hold unless they are handed over.
class PartBatch
{
public:
    explicit PartBatch(std::size_t count) : records(count) {}
    ~PartBatch();
    PartBatch(const PartBatch&) = delete;
    PartBatch& operator=(const PartBatch&) = delete;

    std::size_t size() const { return records.size(); }
    PartInfoStr& operator[](std::size_t k) { return records[k]; }
    // Appends the records to a new[] array, which is replaced by a larger one.
    void appendTo(unsigned int* numParts, PartInfoStr** parts);

private:
    std::vector<PartInfoStr> records;
};

// Replaces the positions in part.partElements.elmIndices (length of them) by indices into the part's own nodes, which
// it makes: sorted ids, coordinates, extents. Negative entries stay.
void makePartNodes(const ModelNodes& nodes, std::size_t length, PartInfoStr& part);

// Fills the records of the chosen parts of a table: chosen[k] -> batch[k]. ownFile: the table's file among the nodes'.
// Uses several threads for much work; the result does not depend on their number. Throws BadFile.
void buildParts(const PartTable& table, const std::vector<std::size_t>& chosen, const ModelNodes& nodes,
                std::size_t ownFile, int fileIndex, PartBatch& batch);

} // namespace readgen

#endif
