// The model that a command line names: a model directory, or a deck, which becomes a Model in memory or is imported to
// a temporary model directory that goes away with this object.
#ifndef KVO_MODEL_SOURCE_H
#define KVO_MODEL_SOURCE_H

#include <memory>
#include <string>

#include <kvo/model.h>

#include "modelinfo.h"

class CAEEnv;

namespace kvo {

class Confinement;

class ModelSource
{
public:
    enum class Decks
    {
        Directory, // as a model directory, which the drawing library can load
        Memory     // as model(), where that can be had: nothing is written
    };

    // Throws ProgramError for what is neither or lies outside of the confinement, and what the deck readers find wrong
    // in a deck.
    ModelSource(const std::string& path, const Confinement& confinement, Decks decks = Decks::Directory);
    ~ModelSource();

    // The pair that the library takes: it looks at dirName/modelName/part_start, in 127 characters at most. A directory
    // with a longer path gets a short name for as long as this object lives.
    const std::string& dirName() const;
    const std::string& modelName() const;

    // A message of the library or the reader, with the short name replaced by the directory that it stands for.
    std::string withRealNames(std::string text) const;

    // Where the model directory or the deck really is: its folder without symbolic links, and its name in it.
    const std::string& trueDirectory() const;
    const std::string& trueName() const;

    // As the user wrote it, for messages.
    const std::string& shownName() const;
    // The directory's or deck's own name, without folders and ending, for titles.
    std::string title() const;

    const ModelInfo& info() const;
    // The deck in memory; null for what is a directory.
    const Model* model() const;

    // Is it a deck, imported for the while?
    bool isDeck() const;

    // Throws ProgramError when another model has taken this one's place since this object was made: what has been read
    // since may be that one's. For the end of every reading.
    void checkUnchanged() const;

    // What of a deck is not in the model, in one line; "" when nothing is missing.
    const std::string& leftOut() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

// One line on standard error about what of a deck is not in the model, if anything.
void warnOfLeftOut(const ModelSource& source);

// Loads every part, without OpenGL. What the reader reports on standard error becomes a ProgramError.
void loadParts(CAEEnv& env, const ModelSource& source);

} // namespace kvo

#endif
