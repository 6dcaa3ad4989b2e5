#include "utilities/MarkedColumnIDsManager.h"

#include "platform/containers/StreamBytes.h"
#include "platform/project/NCProject.h"
#include "platform/storage/InputStreamDirectory.h"
#include "platform/storage/OutputStreamDirectory.h"
#include "platform/text/Exception.h"
#include "utilities/ProjectQueries.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

DerivedStreamableData MarkedColumnIDsManager::MyStreamableData(1, "MarkedColumnIDsManager");
DerivedStreamableData MarkedColumnIDsManager::AdditionalInformation::MyStreamableData(1, "AdditionalInformation");

namespace {

enum Common : int { Nothing = 0, Some = 1, Same = 2 };

// The positions of the common items, here and there, are filled unless there are none.
Common InCommon(ColumnIDs const &one, ColumnIDs const &other, ColumnIDs::Positions &here, ColumnIDs::Positions &there) {
    if (one.GetProject() != other.GetProject() || one.InterSection(other, here, there) == Nothing)
        return Nothing;
    return here.Size() == one.Size() && there.Size() == other.Size() ? Same : Some;
}

bool HasColumns(boost::shared_ptr<ColumnIDs> const &ids) {
    return ids && ids->Size() > 0;
}

bool IsOfModel(boost::shared_ptr<ColumnIDs> const &ids, NCProject const &project, int model) {
    return ids && ids->GetProject().get() == &project && ids->GetOwner() == model;
}

void CheckRead(bool good) {
    if (!good)
        throw VqStreamError(ExceptionMessage::translate("Error when reading from stream."));
}

std::istream &Entry(InputStreamDirectory &directory, int entry) {
    std::istream *const stream = directory.GetInput(entry);
    if (!stream)
        throw VqStreamError(ExceptionMessage::translate("ReadFromStreamDir failed."));
    return *stream;
}

void WriteFlag(std::ostream &stream, bool flag) {
    char const byte = flag ? 1 : 0;
    WriteBytes(stream, &byte, 1);
}

bool ReadFlag(std::istream &stream) {
    char byte = 0;
    CheckRead(ReadBytes(stream, &byte, 1));
    return byte != 0;
}

boost::shared_ptr<ColumnIDs> ReadIDs(std::istream &stream, ProjectPtr const &project) {
    auto const ids = boost::make_shared<ColumnIDs>(project);
    CheckRead(static_cast<bool>(stream >> *ids));
    return ids;
}

} // namespace

bool MarkedColumnIDsManager::AdditionalInformation::VStreamableStartWrite(std::ostream &stream) {
    return std::exchange(m_streamed, true) ||
           (MyStreamableData.Write(stream) && VStreamBase::VStreamableStartWrite(stream) && VStreamableWrite(stream));
}

bool MarkedColumnIDsManager::AdditionalInformation::VStreamableStartRead(std::istream &stream) {
    return std::exchange(m_streamed, true) || (MyStreamableData.Check(stream) && VStreamableRead(stream));
}

void MarkedColumnIDsManager::AdditionalInformation::VStreamableReset() {
    m_streamed = false;
    VStreamBase::VStreamableReset();
}

bool MarkedColumnIDsManager::AdditionalInformation::VStreamableWrite(std::ostream &stream) const {
    OutputStreamDirectory directory(stream, 2);
    WriteFlag(directory.GetOutput(0), FirstInfo);
    WriteFlag(directory.GetOutput(1), SecondInfo);
    return directory.Close();
}

bool MarkedColumnIDsManager::AdditionalInformation::VStreamableRead(std::istream &stream) {
    if (!VStreamBase::VStreamableStartRead(stream) || MyStreamableData.GetVStreamVersionNumber() != 1)
        return false;
    InputStreamDirectory directory(stream);
    FirstInfo = ReadFlag(Entry(directory, 0));
    SecondInfo = ReadFlag(Entry(directory, 1));
    return true;
}

MarkedColumnIDsManager *MarkedColumnIDsManager::Instance() {
    static MarkedColumnIDsManager manager;
    return &manager;
}

MarkedColumnIDsManager::MarkedColumnIDsManager()
    : m_connections{
          NCSignals::ConnectProjectDestroying([this] { OnProjectDeleted(); }),
          NCSignals::ConnectModelDestroying(
              [this](NCProject const &project, int model) { OnBCDeleteModel(project, model); }),
          NCSignals::ConnectActiveProjectChanged(
              [this](NCProject const *project) { OnBCActiveProjectChange(project); }),
          NCSignals::ConnectVarObsDeleted([this](int dataSet) { OnBCDataSetRemoveVarObs(dataSet); }, NCSignals::AtBack),
          NCSignals::ConnectDatasetDeleted(
              [this](NCProject const &project, int dataSet) { OnBCDataSetDeleted(project, dataSet); }),
          NCSignals::ConnectVariablesPurged([this](NCProject const &project, NCSignals::Numbers const &variables) {
              OnBCVariablesPurged(project, variables);
          }),
          NCSignals::ConnectObservationsPurged(
              [this](NCProject const &project, NCSignals::Numbers const &observations) {
                  OnBCObservationsPurged(project, observations);
              })} {}

MarkedColumnIDsManager::~MarkedColumnIDsManager() {
    std::for_each(m_connections.rbegin(), m_connections.rend(),
                  [](auto const &connection) { connection.disconnect(); });
}

boost::signals2::connection
MarkedColumnIDsManager::ConnectChanged(std::function<void(MarkedColumnIDsManager *)> const &function) {
    return m_changed.connect(function);
}

// Intersections and toggles change the current marks without keeping them as old ones.
void MarkedColumnIDsManager::UpdateSelected(ProjectPtr const &project, ColumnIDs const *ids,
                                            std::list<int> const *columns, MarkMode mode,
                                            AdditionalInformation const &information) {
    ColumnIDs given = ids ? *ids : ColumnIDs();
    given.SetProject(project);
    bool const hasBatches =
        given.GetSource() == ColumnIDs::Observations || given.GetSource() == ColumnIDs::AlignedPoints;
    if (m_batchMode && hasBatches && given.Size() > 0)
        given = ProjectUtilities::CreateBatchStrColumnIDs(given, columns);
    else if (columns)
        given.Reduce(ColumnIDs::Positions(std::vector<int>(columns->begin(), columns->end())));

    if (!HasColumns(m_marks) || GetProject() != project || mode == MarkReplace) {
        StartAfresh(project);
        return Add(given, information);
    }
    m_information = information;
    ColumnIDs::Positions here, there;
    Common const common = InCommon(*m_marks, given, here, there);
    bool const allGo = mode == MarkToggle ? common == Same : common == Nothing;
    if (allGo)
        return ClearMarkedIDs(false);
    if (mode == MarkIntersect) {
        m_marks->Reduce(here);
        m_changed(this);
        return;
    }
    if (common == Some) {
        m_marks->Remove(here);
        given.Remove(there);
    }
    Add(given, information);
}

// The marks become an object of their own: old marks share the one that was here.
void MarkedColumnIDsManager::StartAfresh(ProjectPtr const &project) {
    PushToOldMarked();
    m_marks = boost::make_shared<ColumnIDs>(project);
    m_project = project;
}

void MarkedColumnIDsManager::Add(ColumnIDs const &ids, AdditionalInformation const &information) {
    m_information = information;
    if (ids.Size() > 0) // else their kind would take the place of that of the marks
        m_marks->UpdateSelected(ids);
    MakeUnique();
    m_changed(this);
}

void MarkedColumnIDsManager::PushToOldMarked() {
    if (!m_marks)
        return;
    if (!m_updateBlocked && !m_old.empty())
        m_old.pop_front();
    if (m_marks->Size() > 0)
        m_old.push_back({m_marks, m_information});
}

void MarkedColumnIDsManager::MakeUnique() {
    for (OldMarks const &old : m_old) {
        ColumnIDs::Positions here, there;
        if (old.ids && InCommon(*m_marks, *old.ids, here, there) != Nothing)
            old.ids->Remove(there);
    }
    m_old.remove_if([](OldMarks const &old) { return !HasColumns(old.ids); });
}

void MarkedColumnIDsManager::ClearMarkedIDs(bool clearOld) {
    if (!m_marks)
        return;
    if (clearOld)
        m_old.clear();
    else
        PushToOldMarked();
    m_marks.reset();
    m_information = AdditionalInformation();
    m_changed(this);
}

void MarkedColumnIDsManager::RemoveMarked(ColumnIDs::Positions const &positions) {
    if (!m_marks)
        return;
    m_marks->Remove(positions);
    m_changed(this);
}

void MarkedColumnIDsManager::RemoveOldMarked(int index, ColumnIDs::Positions const &positions) {
    OldMarks const *const old = FindOld(index);
    if (!old || !old->ids || !m_old.back().ids)
        return;
    old->ids->Remove(positions);
    m_changed(this);
}

MarkedColumnIDsManager::OldMarks const *MarkedColumnIDsManager::FindOld(int index) const {
    return index >= 0 && index < NumberOfOldMarkedIDs() ? &*std::next(m_old.rbegin(), index) : nullptr;
}

boost::shared_ptr<ColumnIDs const> MarkedColumnIDsManager::GetMarkedIDs(int index) const {
    return index == 0 ? m_marks : GetOldMarkedIDs(index - 1);
}

boost::shared_ptr<ColumnIDs const> MarkedColumnIDsManager::GetOldMarkedIDs(int index) const {
    OldMarks const *const old = FindOld(index);
    return old ? old->ids : nullptr;
}

MarkedColumnIDsManager::AdditionalInformation const &
MarkedColumnIDsManager::GetOldAdditionalInformation(int index) const {
    if (m_old.empty())
        throw Exception(ExceptionMessage::translate("There are no old marked IDs."));
    if (index >= NumberOfOldMarkedIDs())
        throw Exception(ExceptionMessage::translate("There are not that many old marked IDs."));
    return FindOld(std::max(index, 0))->information;
}

bool MarkedColumnIDsManager::HasMarkedIDs() const {
    return HasColumns(m_marks) || std::ranges::any_of(m_old, HasColumns, &OldMarks::ids);
}

// Old marks go with any project, since they may be of that one.
void MarkedColumnIDsManager::OnProjectDeleted() {
    if (m_marks && !m_marks->GetProject()) {
        m_old.clear();
        m_marks.reset();
    }
    if (!m_old.empty()) {
        m_old.clear();
        m_changed(this);
    }
}

void MarkedColumnIDsManager::OnBCDeleteModel(NCProject const &project, int model) {
    if (IsOfModel(m_marks, project, model))
        ClearMarkedIDs(false);
    if (m_old.remove_if([&](OldMarks const &old) { return IsOfModel(old.ids, project, model); }) > 0)
        m_changed(this);
}

void MarkedColumnIDsManager::OnBCActiveProjectChange(NCProject const *project) {
    m_batchMode = m_batchMode && project && project->KeepsBatchMode();
    ClearMarkedIDs(false);
    m_project.reset();
    if (project)
        m_project = project->shared_from_this();
}

void MarkedColumnIDsManager::OnBCDataSetRemoveVarObs(int) {
    ClearMarkedIDs(true);
}

// Its variables and observations may be in other data sets; those that are nowhere any more are purged.
void MarkedColumnIDsManager::OnBCDataSetDeleted(NCProject const &, int) {}

void MarkedColumnIDsManager::OnBCVariablesPurged(NCProject const &project, NCSignals::Numbers const &variables) {
    Purge(project, ColumnIDs::Variables, variables);
}

void MarkedColumnIDsManager::OnBCObservationsPurged(NCProject const &project, NCSignals::Numbers const &observations) {
    Purge(project, ColumnIDs::Observations, observations);
}

void MarkedColumnIDsManager::Purge(NCProject const &project, ColumnIDs::Source kind,
                                   ColumnIDs::Numbers const &numbers) {
    if (!m_marks)
        return;
    ColumnIDs::Positions here, there;
    if (InCommon(*m_marks, ColumnIDs(kind, numbers, project.shared_from_this(), 0), here, there) == Nothing)
        return;
    m_old.clear();
    m_marks->Remove(here);
    if (m_marks->Size() == 0)
        m_marks.reset();
    m_changed(this);
}

bool MarkedColumnIDsManager::VStreamableStartWrite(std::ostream &stream) {
    return std::exchange(m_streamed, true) ||
           (MyStreamableData.Write(stream) && VStreamBase::VStreamableStartWrite(stream) && VStreamableWrite(stream));
}

bool MarkedColumnIDsManager::VStreamableStartRead(std::istream &stream) {
    return std::exchange(m_streamed, true) || (MyStreamableData.Check(stream) && VStreamableRead(stream));
}

void MarkedColumnIDsManager::VStreamableReset() {
    m_streamed = false;
    VStreamBase::VStreamableReset();
}

bool MarkedColumnIDsManager::VStreamableWrite(std::ostream &stream) {
    OutputStreamDirectory directory(stream, 4);
    std::ostream &oldMarks = directory.GetOutput(0);
    std::uint32_t const count = static_cast<std::uint32_t>(m_old.size());
    WriteFourBytes(oldMarks, &count);
    for (OldMarks &old : m_old) {
        WriteFlag(oldMarks, old.ids != nullptr);
        if (old.ids)
            oldMarks << *old.ids;
        oldMarks << old.information;
    }
    if (m_marks)
        directory.GetOutput(1) << *m_marks;
    directory.GetOutput(2) << m_information;
    WriteFlag(directory.GetOutput(3), m_batchMode);
    return directory.Close();
}

bool MarkedColumnIDsManager::VStreamableRead(std::istream &stream) {
    if (!VStreamBase::VStreamableStartRead(stream))
        return false;
    try {
        InputStreamDirectory directory(stream);
        ProjectPtr const project = GetProject();
        if (!project || MyStreamableData.GetVStreamVersionNumber() != 1)
            return false;
        std::istream &oldMarks = Entry(directory, 0);
        std::uint32_t count = 0;
        CheckRead(ReadFourBytes(oldMarks, &count));
        for (m_old.clear(); count > 0; --count) {
            OldMarks old;
            if (ReadFlag(oldMarks))
                old.ids = ReadIDs(oldMarks, project);
            CheckRead(static_cast<bool>(oldMarks >> old.information));
            m_old.push_back(std::move(old));
        }
        std::istream *const marks = directory.GetInput(1);
        m_marks = marks ? ReadIDs(*marks, project) : nullptr;
        CheckRead(static_cast<bool>(Entry(directory, 2) >> m_information));
        m_batchMode = ReadFlag(Entry(directory, 3));
    } catch (VqStreamError const &) {
        return false;
    }
    m_changed(this);
    return true;
}
