#include "platform/containers/StreamBytes.h"
#include "platform/storage/InputStreamDirectory.h"
#include "platform/storage/OutputStreamDirectory.h"
#include "platform/storage/VStreamBase.h"
#include "platform/storage/VStreamableData.h"
#include "platform/text/Exception.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>

namespace {

// A streamable class over the bases `Next`: with two of them, a virtual base is reached twice.
template <char Name, typename... Next>
class Streamable : public virtual Next... {
public:
    std::int32_t value = 0;

    bool VStreamableStartWrite(std::ostream &stream) override {
        return std::exchange(m_passed, true) ||
               (Header().Write(stream) && (Next::VStreamableStartWrite(stream) && ...) &&
                WriteFourBytes(stream, &value));
    }
    bool VStreamableStartRead(std::istream &stream) override {
        return std::exchange(m_passed, true) ||
               (Header().Check(stream) && (Next::VStreamableStartRead(stream) && ...) && ReadFourBytes(stream, &value));
    }
    void VStreamableReset() override {
        m_passed = false;
        (Next::VStreamableReset(), ...);
    }
    static VStreamableData &Header() {
        static VStreamableData header(2, std::string(3, Name));
        return header;
    }

private:
    bool m_passed = false;
};

using Base = Streamable<'b', VStreamBase>;
using Left = Streamable<'l', Base>;
using Right = Streamable<'r', Base>;
using Diamond = Streamable<'d', Left, Right>;

std::string DirectoryBytes() {
    std::ostringstream stream;
    OutputStreamDirectory directory(stream, 3);
    directory.GetOutput(0) << "first";
    directory.GetOutput(2) << std::string(5000, 'z');
    EXPECT_TRUE(directory.Close());
    return stream.str();
}

} // namespace

TEST(VStreamBase, WritesASharedBaseOncePerPass) {
    Diamond out;
    out.Base::value = 1, out.Left::value = 2, out.Right::value = 3, out.value = -4;
    std::stringstream stream;
    stream << out << out;
    // Four headers of 4 + 3 + 4 bytes and four values, in each of two passes.
    EXPECT_EQ(stream.str().size(), 2 * 4 * (11 + 4));
    for (int pass = 0; pass < 2; ++pass) {
        Diamond in;
        EXPECT_TRUE(stream >> in);
        EXPECT_TRUE(in.Base::value == 1 && in.Left::value == 2 && in.Right::value == 3 && in.value == -4);
    }
    EXPECT_THROW(stream >> out, VqStreamError);
    stream.clear(std::ios::failbit);
    EXPECT_FALSE(stream << out);
}

TEST(VStreamableData, RefusesAnotherClassOrANewerVersion) {
    struct {
        char const *name;
        std::uint32_t version;
        bool accepted;
    } const cases[] = {{"Name", 2, true},  {"Name", 1, true},   {"Name", 3, false},
                       {"Nome", 2, false}, {"Names", 2, false}, {"", 2, false}};
    for (auto const &c : cases) {
        std::stringstream stream;
        EXPECT_TRUE(VStreamableData(c.version, c.name).Write(stream));
        VStreamableData mine(2, "Name");
        if (c.accepted) {
            EXPECT_TRUE(mine.Check(stream));
            EXPECT_EQ(mine.GetVStreamVersionNumber(), c.version);
        } else {
            EXPECT_THROW(mine.Check(stream), VqStreamError) << c.name << c.version;
        }
    }
    std::ostringstream whole;
    VStreamableData(2, "Name").Write(whole);
    for (std::size_t length = 0; length < whole.str().size(); ++length) {
        std::istringstream stream(whole.str().substr(0, length));
        EXPECT_THROW(VStreamableData(2, "Name").Check(stream), VqStreamError) << length;
    }
}

TEST(StreamDirectory, GivesEntriesBackAndLeavesTheStreamBehindThem) {
    std::istringstream stream(DirectoryBytes() + "rest");
    InputStreamDirectory directory(stream);
    std::string text;
    EXPECT_TRUE(*directory.GetInput(2) >> text && text == std::string(5000, 'z'));
    EXPECT_TRUE(*directory.GetInput(0) >> text && text == "first");
    for (int const absent : {-1, 1, 3})
        EXPECT_EQ(directory.GetInput(absent), nullptr);
    EXPECT_TRUE(stream >> text && text == "rest");
    std::ostringstream out;
    OutputStreamDirectory written(out, 1);
    EXPECT_THROW(written.GetOutput(1), NCInternalError);
    EXPECT_THROW(written.GetOutput(-1), NCInternalError);
}

TEST(StreamDirectory, RefusesDamage) {
    std::string const whole = DirectoryBytes();
    for (std::size_t length = 0; length < whole.size(); length += length < 40 ? 1 : 97) {
        std::istringstream stream(whole.substr(0, length));
        EXPECT_THROW(InputStreamDirectory{stream}, VqStreamError) << length;
    }
    // The bytes of the count and of each length in turn, made large.
    for (std::size_t at = 0; at < 28; ++at) {
        std::string damaged = whole;
        damaged[at] = '\xff';
        std::istringstream stream(damaged);
        EXPECT_THROW(InputStreamDirectory{stream}, VqStreamError) << at;
    }
}
