// Plain items in and out of the view state file. Private to render/.
#ifndef BINARY_IO_H
#define BINARY_IO_H

#include <cstddef>
#include <cstdio>

// Errors and short files are not detected: items that could not be read keep their values.
template <typename T> void writeItems(FILE* file, const T* items, std::size_t count)
{
    std::fwrite(items, sizeof(T), count, file);
}

template <typename T> void readItems(FILE* file, T* items, std::size_t count)
{
    for (std::size_t k = 0; k < count; ++k) {
        T item;
        if (std::fread(&item, sizeof(T), 1, file) != 1) {
            return;
        }
        items[k] = item;
    }
}

// Bit of MTransform::onlyOnce: compute the centre of the window at the end of the next frame.
constexpr int windowCenterPending = 2;

#endif
