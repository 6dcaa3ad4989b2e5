#pragma once

#include "utilities/KestaProjectHandlerBase.h"

#include <boost/archive/polymorphic_binary_iarchive.hpp>
#include <boost/archive/polymorphic_binary_oarchive.hpp>
#include <boost/archive/polymorphic_text_iarchive.hpp>
#include <boost/archive/polymorphic_text_oarchive.hpp>
#include <boost/archive/polymorphic_xml_iarchive.hpp>
#include <boost/archive/polymorphic_xml_oarchive.hpp>

#include <sstream>
#include <string>

// Archives of all kinds, in memory.
namespace archives {

enum Form { Text, Binary, Xml };
inline constexpr Form forms[] = {Text, Binary, Xml};

// Calls `use` with an archive on the stream.
template <typename TextArchive, typename BinaryArchive, typename XmlArchive, typename Base, typename Stream,
          typename Use>
void With(Form form, Stream &stream, Use use) {
    auto const open = [&]<typename Archive>(Archive *) {
        Archive archive(stream);
        use(static_cast<Base &>(archive));
    };
    if (form == Text)
        open(static_cast<TextArchive *>(nullptr));
    else if (form == Binary)
        open(static_cast<BinaryArchive *>(nullptr));
    else
        open(static_cast<XmlArchive *>(nullptr));
}

template <typename Object>
std::string Saved(Object const &object, Form form) {
    using namespace boost::archive;
    std::ostringstream stream;
    With<polymorphic_text_oarchive, polymorphic_binary_oarchive, polymorphic_xml_oarchive, polymorphic_oarchive>(
        form, stream, [&object](polymorphic_oarchive &archive) { object.save(archive, 0); });
    return stream.str();
}

template <typename Object>
void Load(std::string const &saved, Form form, Object &object) {
    using namespace boost::archive;
    std::istringstream stream(saved);
    With<polymorphic_text_iarchive, polymorphic_binary_iarchive, polymorphic_xml_iarchive, polymorphic_iarchive>(
        form, stream, [&object](polymorphic_iarchive &archive) { object.load(archive, 7); });
}

// The application whose active project archives are read in.
class Application final : public KestaProjectHandlerBase {
public:
    explicit Application(boost::shared_ptr<NCProject> const &project) : m_project(project) {}
    boost::shared_ptr<NCProject> GetActiveProject() const override { return m_project; }
    boost::shared_ptr<NCProject> NCGetProject(int) const override { return m_project; }

private:
    boost::shared_ptr<NCProject> m_project;
};

} // namespace archives
