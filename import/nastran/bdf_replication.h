// Cards that refer to the card before them.
//
//   CQUAD4,1,7,1,2,12,11
//   =,*1,=,*(1),*1,*1,*1      "=" copies a field, the name too; "*1" and "*(1)" add 1 to the field of the card before
//   =3                        three more: each adds what the card before added
//   GRID,1,,0.,5.,2.5
//   =,*1,=,*.5,==             "==" copies all further fields of the line, and the further lines unless they are given
//
// The same holds in small and large fields.
#ifndef KVO_IMPORT_NASTRAN_BDF_REPLICATION_H
#define KVO_IMPORT_NASTRAN_BDF_REPLICATION_H

#include <cstdint>
#include <string>
#include <vector>

#include "bdf_card.h"
#include "bdf_lines.h"
#include "import_log.h"

namespace kvo {

class BdfReplication
{
public:
    BdfReplication(BdfLines& lines, ImportLog& log) : lines(lines), log(log) {}

    // The next card, written out or made from the one before. False behind the last one. A made card has the place of
    // the line that asks for it; its fields are valid until the next call.
    bool next(BdfCard& card);

private:
    static constexpr std::uint64_t mostCards = 1000000; // made by "=n" in one deck

    // What a field adds to that of the card before.
    struct Increment
    {
        enum class Kind
        {
            None,
            Integer,
            Real
        } kind = Kind::None;
        std::int64_t integer = 0;
        double real = 0.0;
    };

    static Increment incrementOf(std::string_view field);
    static bool added(const std::string& start, const Increment& increment, std::uint64_t times, std::string& sum);

    static bool refersBack(const BdfCard& card);
    void remember(const BdfCard& card);
    bool replicate(BdfCard& card);
    bool takeField(const BdfCard& card, std::size_t field);
    void copyRest(const BdfCard& card, std::size_t field);
    void startRepeating(const BdfCard& card);
    bool repeat(BdfCard& card);
    bool refuse(const BdfCard& card, std::size_t field);
    void give(BdfCard& card);
    const std::string& fieldBefore(std::size_t field) const;

    BdfLines& lines;
    ImportLog& log;
    CardKey keyBefore = 0; // of the card before; 0: there is none
    std::vector<std::string> before;
    std::vector<Increment> increments; // by which it differs from the one before it
    std::vector<std::string> made;     // fields of the card that is made now
    std::vector<std::string> start;    // of the card that is repeated
    BdfCard repeated;                  // the card that asks for repeats
    std::uint64_t repeatsLeft = 0;
    std::uint64_t repeatsDone = 0;
    std::uint64_t cardsMade = 0;
};

} // namespace kvo

#endif
