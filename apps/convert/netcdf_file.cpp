// The door to the netCDF library.
#include "netcdf_file.h"

#include <netcdf.h>

#include <filesystem>

#include "container_elements.h"
#include "place.h"

namespace kvo {

NetcdfFile::NetcdfFile(const std::string& path) : name(path)
{
    // The library takes relative names that look like addresses for such.
    check(nc_open(std::filesystem::absolute(path).c_str(), NC_NOWRITE, &id), "cannot be opened");
    int format = 0;
    check(nc_inq_format(id, &format), "has no format");
    mayBeCompressed = format == NC_FORMAT_NETCDF4 || format == NC_FORMAT_NETCDF4_CLASSIC;
}

NetcdfFile::~NetcdfFile()
{
    nc_close(id);
}

bool NetcdfFile::hasDimension(const std::string& dimension) const
{
    int found = -1;
    return nc_inq_dimid(id, dimension.c_str(), &found) == NC_NOERR;
}

std::size_t NetcdfFile::length(const std::string& dimension) const
{
    int found = -1;
    std::size_t result = 0;
    if (nc_inq_dimid(id, dimension.c_str(), &found) == NC_NOERR) {
        check(nc_inq_dimlen(id, found, &result), dimension);
    }
    return result;
}

std::size_t NetcdfFile::dimensionsBeginning(const std::string& beginning) const
{
    int dimensions = 0;
    check(nc_inq_ndims(id, &dimensions), "the number of its dimensions");
    std::size_t count = 0;
    for (int k = 0; k < dimensions; ++k) {
        char dimension[NC_MAX_NAME + 1] = {};
        check(nc_inq_dimname(id, k, dimension), "a dimension");
        count += std::string(dimension).rfind(beginning, 0) == 0 ? 1 : 0;
    }
    return count;
}

bool NetcdfFile::hasVariable(const std::string& variable) const
{
    int found = -1;
    return nc_inq_varid(id, variable.c_str(), &found) == NC_NOERR;
}

std::vector<std::size_t> NetcdfFile::shape(const std::string& variable) const
{
    int count = 0;
    int dimensions[NC_MAX_VAR_DIMS];
    check(nc_inq_varndims(id, variableId(variable), &count), variable);
    check(nc_inq_vardimid(id, variableId(variable), dimensions), variable);
    std::vector<std::size_t> result(static_cast<std::size_t>(count));
    for (std::size_t k = 0; k < result.size(); ++k) {
        check(nc_inq_dimlen(id, dimensions[k], &result[k]), variable);
    }
    return result;
}

std::vector<std::int64_t> NetcdfFile::integers(const std::string& variable, std::size_t count) const
{
    expectCount(variable, count, 1);
    std::vector<long long> values(count);
    check(nc_get_var_longlong(id, variableId(variable), values.data()), variable);
    return std::vector<std::int64_t>(values.begin(), values.end());
}

std::vector<double> NetcdfFile::reals(const std::string& variable, std::size_t count) const
{
    expectCount(variable, count, 4);
    std::vector<double> values(count);
    check(nc_get_var_double(id, variableId(variable), values.data()), variable);
    return values;
}

std::vector<std::string> NetcdfFile::names(const std::string& variable, std::size_t count) const
{
    std::vector<std::string> result(count);
    if (!hasVariable(variable)) {
        return result;
    }
    const std::vector<std::size_t> rows = shape(variable);
    if (rows.size() != 2 || rows[0] < count) {
        throw ImportError({name, 0}, "damaged: " + variable + " holds no " + std::to_string(count) + " names");
    }
    std::vector<char> text(checkedSize(variable, 1));
    check(nc_get_var_text(id, variableId(variable), text.data()), variable);
    for (std::size_t k = 0; k < count; ++k) {
        result[k] = trimmedName(std::string(text.data() + k * rows[1], rows[1]));
    }
    return result;
}

std::string NetcdfFile::text(const std::string& variable, const std::string& attribute) const
{
    const int owner = variable.empty() ? NC_GLOBAL : variableId(variable);
    nc_type type = NC_NAT;
    std::size_t length = 0;
    if (nc_inq_att(id, owner, attribute.c_str(), &type, &length) != NC_NOERR || type != NC_CHAR) {
        return {};
    }
    checkPlausible(name, length, 1, mayBeCompressed);
    std::string result(length, '\0');
    check(nc_get_att_text(id, owner, attribute.c_str(), result.data()), attribute);
    return trimmedName(result);
}

int NetcdfFile::variableId(const std::string& variable) const
{
    int found = -1;
    check(nc_inq_varid(id, variable.c_str(), &found), variable);
    return found;
}

std::size_t NetcdfFile::checkedSize(const std::string& variable, std::size_t bytesEach) const
{
    std::size_t size = 1;
    for (const std::size_t length : shape(variable)) {
        if (length != 0 && size > SIZE_MAX / length) {
            throw ImportError({name, 0}, "damaged: " + variable + " is too large");
        }
        size *= length;
    }
    checkPlausible(name, size, bytesEach, mayBeCompressed);
    return size;
}

void NetcdfFile::expectCount(const std::string& variable, std::size_t count, std::size_t bytesEach) const
{
    const std::size_t size = checkedSize(variable, bytesEach);
    if (size != count) {
        throw ImportError({name, 0}, "damaged: " + variable + " has " + std::to_string(size) + " values instead of " +
                                         std::to_string(count));
    }
}

void NetcdfFile::check(int status, const std::string& what) const
{
    if (status != NC_NOERR) {
        throw ImportError({name, 0}, "damaged: " + what + ": " + nc_strerror(status));
    }
}

} // namespace kvo
