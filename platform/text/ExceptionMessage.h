#pragma once

#include "platform/export.h"

#include <locale>
#include <sstream>
#include <string>
#include <vector>

// A message for the user, in the user's language, with numbered placeholders:
//
//     ExceptionMessage::translate("Model {1} is not a predictive model.") % model
//
// The first operator% fills every {1}, the second every {2}, and so on; a value may hold anything. Values are written
// in the classic locale. Debug builds assert in Text() that each placeholder has its value and each value its
// placeholder.
class DATASERIES_API ExceptionMessage {
public:
    // The text as the loaded message catalogue has it, or as it stands where no catalogue is loaded.
    static ExceptionMessage translate(char const *text);

    template <typename Value>
    ExceptionMessage operator%(Value const &value) const {
        std::ostringstream stream;
        stream.imbue(std::locale::classic());
        stream << value;
        return Filled(stream.str());
    }

    std::string Text() const;

private:
    explicit ExceptionMessage(std::string text);
    ExceptionMessage Filled(std::string value) const;

    std::string m_text;
    std::vector<std::string> m_values;
};
