// What every reader must stand: decks that end early or lie about themselves. And bytes of either order for them.
#ifndef KVO_TESTS_IMPORT_HOSTILE_H
#define KVO_TESTS_IMPORT_HOSTILE_H

#include <algorithm>
#include <cctype>
#include <cstring>
#include <functional>
#include <string>

#include "import_fixture.h"

class HostileTest : public ImportTest
{
protected:
    // "ok", or the message of the error.
    std::string outcome(const std::string& content, const std::string& name)
    {
        const std::string file = write(name, content);
        try {
            readFile(file);
            return "ok";
        } catch (const kvo::ImportError& error) {
            return std::string(error.what()).substr(folder.string().size() + 1);
        }
    }

    // Reads 20 beginnings of the content: each ends with a message that names the file and the line, or the byte where
    // the content is binary. A beginning that is whole for itself may be read.
    void expectErrorsWhenCutOff(const std::string& content, const std::string& name, bool binary,
                                const std::function<bool(const std::string&)>& whole)
    {
        constexpr std::size_t places = 20;
        for (std::size_t k = 1; k <= places; ++k) {
            const std::string beginning = content.substr(0, content.size() * k / (places + 1));
            const std::string message = outcome(beginning, name);
            if (message == "ok") {
                EXPECT_TRUE(whole(beginning)) << "cut off behind byte " << beginning.size();
                continue;
            }
            EXPECT_EQ(message.substr(0, name.size() + 1), name + ":");
            const bool line =
                message.size() > name.size() + 1 && std::isdigit(static_cast<unsigned char>(message[name.size() + 1]));
            EXPECT_TRUE(line || (binary && contains(message, "byte"))) << message;
        }
    }
};

// Appends values as bytes, in the other order than this machine's if swapped.
class Bytes
{
public:
    explicit Bytes(bool swapped = false) : swapped(swapped) {}

    template <class Value> Bytes& add(Value value)
    {
        char bytes[sizeof(Value)];
        std::memcpy(bytes, &value, sizeof(Value));
        if (swapped) {
            std::reverse(bytes, bytes + sizeof(Value));
        }
        text.append(bytes, sizeof(Value));
        return *this;
    }
    Bytes& ints(std::initializer_list<std::int32_t> values)
    {
        for (const std::int32_t value : values) {
            add(value);
        }
        return *this;
    }
    Bytes& longs(std::initializer_list<std::int64_t> values)
    {
        for (const std::int64_t value : values) {
            add(value);
        }
        return *this;
    }
    Bytes& floats(std::initializer_list<float> values)
    {
        for (const float value : values) {
            add(value);
        }
        return *this;
    }
    Bytes& reals(std::initializer_list<double> values)
    {
        for (const double value : values) {
            add(value);
        }
        return *this;
    }
    Bytes& plain(const std::string& more)
    {
        text += more;
        return *this;
    }

    std::string text;

private:
    bool swapped;
};

#endif
