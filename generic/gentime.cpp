// The wall clock in milliseconds.
#include "gentime.h"

#include <chrono>

unsigned long long GenTime::getCurrentMillis()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}
