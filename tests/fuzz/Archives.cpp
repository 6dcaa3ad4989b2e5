#include "building/ProjectDataBuilder.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/RealProject.h"
#include "tests/support/TemporaryFolder.h"
#include "utilities/DefaultSelection.h"
#include "utilities/KestaProjectHandlerBase.h"

#include <boost/archive/polymorphic_binary_iarchive.hpp>
#include <boost/archive/polymorphic_text_iarchive.hpp>
#include <boost/archive/polymorphic_xml_iarchive.hpp>

#include <cstdlib>
#include <memory>
#include <new>
#include <sstream>

// Not all forms of operator new are replaced below.
extern "C" char const *__asan_default_options() {
    return "alloc_dealloc_mismatch=0";
}

// An archive can claim any length, and asks for that much memory before it reads. What is too much is refused, as by
// a machine that has no more.
void *operator new(std::size_t size) {
    constexpr std::size_t most = std::size_t(64) << 20;
    void *const memory = size <= most ? std::malloc(size) : nullptr;
    if (!memory)
        throw std::bad_alloc();
    return memory;
}
void operator delete(void *memory) noexcept {
    std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

class Application final : public KestaProjectHandlerBase {
public:
    boost::shared_ptr<NCProject> GetActiveProject() const override { return m_project; }
    boost::shared_ptr<NCProject> NCGetProject(int) const override { return m_project; }

private:
    TemporaryFolder m_folder;
    boost::shared_ptr<engine::Project> m_project = MakeRealProject(m_folder / "real.dsp");
};

template <typename Data>
void Load(boost::archive::polymorphic_iarchive &archive, Data data) {
    data.load(archive, 0);
}

// Which is then shown.
void LoadSelection(boost::archive::polymorphic_iarchive &archive) {
    SelectDataSeriesData selection;
    selection.load(archive, 0);
    std::unique_ptr<ProjectData> const table(ProjectDataUtilities::ProjectDataBuilder(&selection).Build());
}

template <typename Archive>
void LoadFrom(std::string const &bytes, unsigned what) {
    std::istringstream stream(bytes);
    // The check of XML tags of Boost 1.74 reads behind the names.
    Archive archive(stream, boost::archive::no_header | boost::archive::no_xml_tag_checking);
    if (what % 3 == 0)
        Load(archive, ProjectVectorData());
    else if (what % 3 == 1)
        Load(archive, ProjectUtilities::DefaultSelection());
    else
        LoadSelection(archive);
}

} // namespace

// An archive of text, XML or binary, of a specification, the defaults of a project or a selection, as the first byte
// tells. Exceptions of any kind are allowed.
int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
    static Application const application;
    FuzzInput const input(data, size);
    try {
        if (input.choice % 3 == 0)
            LoadFrom<boost::archive::polymorphic_text_iarchive>(input.bytes, input.choice / 3);
        else if (input.choice % 3 == 1)
            LoadFrom<boost::archive::polymorphic_xml_iarchive>(input.bytes, input.choice / 3);
        else
            LoadFrom<boost::archive::polymorphic_binary_iarchive>(input.bytes, input.choice / 3);
    } catch (std::exception const &) {
    }
    return 0;
}
