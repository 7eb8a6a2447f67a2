// Prints what the importer makes of decks, one JSON object a line, for comparison with an independent count.
#include <cstdio>
#include <iostream>
#include <map>

#include <nlohmann/json.hpp>

#include "abaqus/inp_reader.h"
#include "deck.h"
#include "mesh_finish.h"

namespace {

nlohmann::json countsOf(const std::string& path)
{
    nlohmann::json result = {{"deck", path}};
    kvo::ImportLog log;
    try {
        const kvo::Mesh mesh = kvo::readDeck(path, log);
        std::map<std::string, std::uint64_t> types;
        for (const kvo::MeshFile& file : mesh.files) {
            for (const kvo::ElementBlock& block : file.blocks) {
                for (const std::uint32_t part : block.part) {
                    types[mesh.types[block.type].name] += part != kvo::noPart;
                }
            }
        }
        result["nodes"] = mesh.nodeCount();
        result["elements"] = types;
        result["parts"] = mesh.parts.size();
    } catch (const kvo::ImportError& error) {
        result["error"] = error.what();
    }
    result["undrawn"] = nlohmann::json::object();
    for (const kvo::ImportLog::List& list : log.lists()) {
        for (const kvo::ImportLog::Entry& entry : list.entries) {
            if (list.title == kvo::listElementsNotDrawn) {
                result["undrawn"][entry.name] = entry.count;
            }
        }
    }
    for (const kvo::ImportLog::Warnings& warnings : log.warnings()) {
        result["warnings"][warnings.kind] = warnings.count;
    }
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    for (int k = 1; k < argc; ++k) {
        std::cout << countsOf(argv[k]) << "\n";
    }
    return 0;
}
