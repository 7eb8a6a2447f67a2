// The millisecond clock behind every timing line that the library prints.
#ifndef GENTIME_H
#define GENTIME_H

#include "kvoexport.h"

class KVO_EXPORT GenTime
{
public:
    // Wall-clock time in milliseconds since the epoch (seconds x 1000 + milliseconds).
    static unsigned long long getCurrentMillis();
};

#endif
