// What becomes of a damaged text deck: it must not go unsaid.
#ifndef KVO_TESTS_IMPORT_DECK_OUTCOME_H
#define KVO_TESTS_IMPORT_DECK_OUTCOME_H

#include <cctype>

#include "import_fixture.h"

class DeckOutcomeTest : public ImportTest
{
protected:
    // The error that reading ends with, else the first warning with a line; nothing if all went without a word.
    std::string complaint(const std::string& text, const std::string& name)
    {
        const std::string file = write(name, text);
        try {
            readFile(file);
        } catch (const kvo::ImportError& error) {
            return shortened(error.what());
        }
        for (const kvo::ImportLog::Warnings& kind : log.warnings()) {
            for (const std::string& line : kind.lines) {
                return shortened(line);
            }
        }
        return {};
    }

    // 20 beginnings of a deck: each brings a message with file and line.
    void expectComplaintsWhenCutOff(const std::string& text, const std::string& name)
    {
        constexpr std::size_t places = 20;
        for (std::size_t k = 1; k <= places; ++k) {
            const std::size_t bytes = text.size() * k / (places + 1);
            const std::string message = complaint(text.substr(0, bytes), name);
            const bool placed = message.rfind(name + ":", 0) == 0 && message.size() > name.size() + 4 &&
                                std::isdigit(static_cast<unsigned char>(message[name.size() + 1])) != 0;
            EXPECT_TRUE(placed) << "cut off behind byte " << bytes << ": " << message;
        }
    }

private:
    std::string shortened(const std::string& message) const
    {
        const std::string prefix = folder.string() + "/";
        return message.rfind(prefix, 0) == 0 ? message.substr(prefix.size()) : message;
    }
};

#endif
