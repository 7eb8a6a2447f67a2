// A netCDF file's dimensions, variables and attributes by name. Whatever the library cannot do is an ImportError that
// names the file.
#ifndef KVO_CONVERT_NETCDF_FILE_H
#define KVO_CONVERT_NETCDF_FILE_H

#include <cstdint>
#include <string>
#include <vector>

namespace kvo {

class NetcdfFile
{
public:
    explicit NetcdfFile(const std::string& path);
    ~NetcdfFile();
    NetcdfFile(const NetcdfFile&) = delete;
    NetcdfFile& operator=(const NetcdfFile&) = delete;

    const std::string& path() const { return name; }

    bool hasDimension(const std::string& dimension) const;
    std::size_t length(const std::string& dimension) const;              // 0 if there is no such dimension
    std::size_t dimensionsBeginning(const std::string& beginning) const; // how many have such names

    bool hasVariable(const std::string& variable) const;
    std::vector<std::size_t> shape(const std::string& variable) const;

    // All values of a variable, of any type of numbers. It must have this many.
    std::vector<std::int64_t> integers(const std::string& variable, std::size_t count) const;
    std::vector<double> reals(const std::string& variable, std::size_t count) const;
    // Rows of characters without the blanks at their ends; as many as asked for, empty ones if there is no such
    // variable.
    std::vector<std::string> names(const std::string& variable, std::size_t count) const;

    // Text of an attribute, of the whole file if variable is empty; "" if there is none.
    std::string text(const std::string& variable, const std::string& attribute) const;

private:
    int variableId(const std::string& variable) const;
    std::size_t checkedSize(const std::string& variable, std::size_t bytesEach) const;
    void expectCount(const std::string& variable, std::size_t count, std::size_t bytesEach) const;
    void check(int status, const std::string& what) const;

    std::string name;
    int id = -1;
    bool mayBeCompressed = false;
};

} // namespace kvo

#endif
