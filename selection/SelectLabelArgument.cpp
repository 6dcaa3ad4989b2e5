#include "selection/SelectLabelArgument.h"

#include "platform/project/NCProject.h"
#include "platform/storage/ConfigurationSection.h"
#include "platform/text/VqStdString.h"

#include <boost/archive/polymorphic_iarchive.hpp>
#include <boost/archive/polymorphic_oarchive.hpp>
#include <boost/serialization/nvp.hpp>

namespace {

constexpr int wholeLabel = -1;

} // namespace

void SelectLabelArgument::SetType(ProjectVector::VectorTypeEnum type) {
    m_type = type;
    m_fromOptions = false;
    if (type != ProjectVector::VectorTypeComponent && type != ProjectVector::VectorTypeLag &&
        type != ProjectVector::VectorTypeAligned)
        return;
    m_selID = type == ProjectVector::VectorTypeAligned ? -1 : 1;
    m_startPos = 1;
    m_length = 20;
}

void SelectLabelArgument::SetFromOptions(ProjectVector::VectorTypeEnum type, NCProjectOptions const *options) {
    NCProjectOptions::LabelSettings label{1, 1, 20};
    switch (type) {
    case ProjectVector::VectorTypeVariablesScores:
        label = options->observations;
        break;
    case ProjectVector::VectorTypeObservationsLoadings:
        label = options->variables;
        break;
    case ProjectVector::VectorTypeComponent:
        break;
    case ProjectVector::VectorTypeAligned:
        label.identifier = -1;
        break;
    case ProjectVector::VectorTypeBatch:
        label = options->observations;
        label.identifier = 1;
        break;
    default:
        return;
    }
    m_type = type;
    m_fromOptions = true;
    m_selID = label.identifier;
    m_startPos = label.start;
    m_length = label.length;
}

std::string SelectLabelArgument::GetColumnName(std::string const &label) const {
    bool const isWhole =
        m_length == wholeLabel ? m_startPos < 2 : m_startPos == 1 && m_length > static_cast<int>(label.size());
    return isWhole ? label
                   : VqStdString::GraphemeClusterSubString(label, m_startPos - 1, m_length, std::locale::classic());
}

void SelectLabelArgument::WriteSection(ConfigurationSection *section) const {
    section->WriteKey("DisplayAll", m_displayAll ? 1 : 0);
    section->WriteKey("NoneAvailable", m_noneAvailable ? 1 : 0);
    section->WriteKey("Type", ProjectVector::FromVectorTypeEnum(m_type));
    section->WriteKey("SelID", m_selID);
    section->WriteKey("StartPos", m_startPos);
    section->WriteKey("Length", m_length);
    section->WriteKey("Rotation", m_rotation);
    section->WriteKey("DisplayInterval", m_displayInterval);
    section->WriteKey("FromOptions", m_fromOptions ? 1 : 0);
    section->WriteKey("DisplayAllAvailable", m_displayAllAvailable);
}

bool SelectLabelArgument::ReadSection(ConfigurationSection *section) {
    int displayAll = 0, noneAvailable = 0, fromOptions = m_fromOptions ? 1 : 0;
    std::string type;
    if (!section->ReadKey("DisplayAll", displayAll) || !section->ReadKey("NoneAvailable", noneAvailable) ||
        !section->ReadKey("Type", type))
        return false;
    section->ReadKey("FromOptions", fromOptions);
    m_displayAll = displayAll != 0;
    m_noneAvailable = noneAvailable == 1;
    m_type = ProjectVector::ToVectorTypeEnum(type.c_str());
    m_fromOptions = fromOptions == 1;
    if (!m_fromOptions && (!section->ReadKey("SelID", m_selID) || !section->ReadKey("StartPos", m_startPos) ||
                           !section->ReadKey("Length", m_length) || !section->ReadKey("Rotation", m_rotation) ||
                           !section->ReadKey("DisplayInterval", m_displayInterval)))
        return false;
    section->ReadKey("DisplayAllAvailable", m_displayAllAvailable);
    return true;
}

template <typename Archive>
void SelectLabelArgument::serialize(Archive &archive, unsigned int) {
    // A bool has the same form as a byte, and must not be read from a damaged archive.
    auto const flag = [&archive](char const *name, bool &value) {
        unsigned char byte = value ? 1 : 0;
        archive &boost::serialization::make_nvp(name, byte);
        value = byte != 0;
    };
    auto const number = [&archive](char const *name, int &value) {
        archive &boost::serialization::make_nvp(name, value);
    };
    int type = m_type;
    flag("DisplayAll", m_displayAll);
    flag("NoneAvailable", m_noneAvailable);
    number("Type", type);
    number("SelID", m_selID);
    number("StartPos", m_startPos);
    number("Length", m_length);
    number("Rotation", m_rotation);
    number("DisplayInterval", m_displayInterval);
    flag("FromOptions", m_fromOptions);
    flag("DisplayAllAvailable", m_displayAllAvailable);
    m_type = static_cast<ProjectVector::VectorTypeEnum>(type);
}

template DATASERIES_API void SelectLabelArgument::serialize(boost::archive::polymorphic_oarchive &, unsigned int);
template DATASERIES_API void SelectLabelArgument::serialize(boost::archive::polymorphic_iarchive &, unsigned int);
