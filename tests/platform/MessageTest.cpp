#include "platform/text/Exception.h"

#include <gtest/gtest.h>

TEST(ExceptionMessage, FillsEachPlaceholderWithItsValue) {
    EXPECT_EQ((ExceptionMessage::translate("{2} of model {1}, {1} again") % 3 % "t").Text(), "t of model 3, 3 again");
    EXPECT_EQ((ExceptionMessage::translate("{1}, {2}") % "{2}{3}" % "{1}").Text(), "{2}{3}, {1}");
}

TEST(ExceptionMessage, MisuseIsNotAUserError) {
    EXPECT_THROW(
        try { throw NCInternalError("Here", ExceptionMessage::translate("wrong")); } catch (NCError const &){},
        NCInternalError);
}
