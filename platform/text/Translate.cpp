#include "platform/text/Translate.h"

#include <boost/locale/message.hpp>

std::string translate(char const *text) {
    return boost::locale::translate(text).str();
}

std::string translate(char const *context, char const *text) {
    return boost::locale::translate(context, text).str();
}
