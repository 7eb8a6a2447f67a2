// The name of a picture that is to be written.
#ifndef KVO_PICTURE_FILE_H
#define KVO_PICTURE_FILE_H

#include <string>

namespace kvo {

// Pictures are PNG files. What is wrong with a name that ends as pictures of another format do; "" for any other name.
std::string wrongPictureEnding(const std::string& file);

} // namespace kvo

#endif
