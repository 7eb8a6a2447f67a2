// Parameters of archive files: names that stand for numbers in commands.
#ifndef KVO_IMPORT_ANSYS_CDB_PARAMETERS_H
#define KVO_IMPORT_ANSYS_CDB_PARAMETERS_H

#include <map>
#include <string>

#include "cdb_lines.h"

namespace kvo {

class CdbParameters
{
public:
    // "*SET,cid,4" and "cid=4". False for any other command, and for what gives a name no plain number: then nothing
    // is known of the name any more.
    bool read(const CdbCommand& command);

    // Fields that are the name of a parameter become its number, in commands whose fields are numbers.
    void resolve(CdbCommand& command) const;

private:
    bool set(const std::string& name, const std::string& value);

    std::map<std::string, std::string> values; // by upper-case name
};

} // namespace kvo

#endif
