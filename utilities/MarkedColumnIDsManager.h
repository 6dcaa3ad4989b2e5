#pragma once

#include "platform/forward.h"
#include "platform/identity/ColumnIDs.h"
#include "platform/project/NCSignals.h"
#include "platform/storage/VStreamBase.h"
#include "platform/storage/VStreamableData.h"

#include <boost/signals2/signal.hpp>

#include <array>
#include <functional>
#include <list>

// What the user marked in a plot or a list, for all windows of the process: the current marks, those before them, and a
// signal of every change. It follows the life of the project by itself.
//
// Two lists of marks are the same when they have the same items, in any order; items of two projects have nothing in
// common. Not for several threads at once: calls and events come on the thread that owns the project.
class DATASERIES_API MarkedColumnIDsManager : public VStreamBase {
public:
    // Goes with marks, from the one who makes them to those who show them.
    struct DATASERIES_API AdditionalInformation : VStreamBase {
        bool FirstInfo = false;
        bool SecondInfo = false;

        bool VStreamableStartWrite(std::ostream &stream) override;
        bool VStreamableStartRead(std::istream &stream) override;
        void VStreamableReset() override;

        static DerivedStreamableData MyStreamableData;

    private:
        bool VStreamableWrite(std::ostream &stream) const;
        bool VStreamableRead(std::istream &stream);

        bool m_streamed = false;
    };

    enum MarkMode : int {
        MarkToggle = 0,    // items that are marked are no more, the others are
        MarkIntersect = 1, // only what is in both stays
        MarkReplace = 2
    };

    static MarkedColumnIDsManager *Instance();
    MarkedColumnIDsManager(MarkedColumnIDsManager const &) = delete;
    MarkedColumnIDsManager &operator=(MarkedColumnIDsManager const &) = delete;
    ~MarkedColumnIDsManager() override;

    // The function is called with this after every change.
    boost::signals2::connection ConnectChanged(std::function<void(MarkedColumnIDsManager *)> const &function);

    // Marks the columns, or those at the listed 1-based positions of them; null is no columns. Where nothing is marked,
    // or the marks are of another project, every mode marks what is given. In batch mode observations and aligned
    // points mark their batches.
    //
    // What is replaced or cleared is kept as the newest old marks, where there is room for one; under BlockUpdates for
    // any number. Old marks lose the items that are marked again.
    void UpdateSelected(ProjectPtr const &project, ColumnIDs const *ids, std::list<int> const *columns, MarkMode mode,
                        AdditionalInformation const &information);
    // Nothing happens where there are no current marks. With `clearOld` the old marks go too.
    void ClearMarkedIDs(bool clearOld);
    // Takes away the marks at these 1-based positions; nothing happens where there are no such marks.
    void RemoveMarked(ColumnIDs::Positions const &positions);
    void RemoveOldMarked(int index, ColumnIDs::Positions const &positions);

    // 0 for the current marks, from 1 on the old ones. Null for none.
    boost::shared_ptr<ColumnIDs const> GetMarkedIDs(int index) const;
    // 0 for the newest. Null outside.
    boost::shared_ptr<ColumnIDs const> GetOldMarkedIDs(int index) const;
    AdditionalInformation const &GetAdditionalInformation() const { return m_information; }
    // Exception for an index past the oldest; a negative one is the newest.
    AdditionalInformation const &GetOldAdditionalInformation(int index) const;

    // There are items in the current marks or in old ones.
    bool HasMarkedIDs() const;
    bool HasOldMarkedIDs() const { return !m_old.empty(); }
    int NumberOfOldMarkedIDs() const { return static_cast<int>(m_old.size()); }

    // In between the old marks grow without a limit. Calls do not nest.
    void BlockUpdates() { m_updateBlocked = true; }
    void EndBlockUpdate() { m_updateBlocked = false; }
    bool IsUpdateBlocked() const { return m_updateBlocked; }

    bool IsBatchMode() const { return m_batchMode; }
    void SetIsBatchMode(bool batchMode) { m_batchMode = batchMode; }
    // That of the current marks; null when it has gone.
    ProjectPtr GetProject() const { return m_project.lock(); }

    // All marks, the batch mode and the information, without the project. Reading binds the marks to the project that
    // is here, and is refused without one. False for a damaged stream, of which what was read before the damage stays;
    // VqStreamError where it holds something else.
    bool VStreamableStartWrite(std::ostream &stream) override;
    bool VStreamableStartRead(std::istream &stream) override;
    void VStreamableReset() override;

    static DerivedStreamableData MyStreamableData;

protected:
    MarkedColumnIDsManager();

    // Takes the current marks out of the old ones, and those that are empty then out of the list.
    void MakeUnique();
    void PushToOldMarked();

    void OnProjectDeleted();
    void OnBCDeleteModel(NCProject const &project, int model);
    void OnBCActiveProjectChange(NCProject const *project);
    void OnBCDataSetRemoveVarObs(int dataSet);
    void OnBCDataSetDeleted(NCProject const &project, int dataSet);
    void OnBCVariablesPurged(NCProject const &project, NCSignals::Numbers const &variables);
    void OnBCObservationsPurged(NCProject const &project, NCSignals::Numbers const &observations);

private:
    struct OldMarks {
        boost::shared_ptr<ColumnIDs> ids;
        AdditionalInformation information;
    };

    OldMarks const *FindOld(int index) const;
    void StartAfresh(ProjectPtr const &project);
    void Add(ColumnIDs const &ids, AdditionalInformation const &information);
    void Purge(NCProject const &project, ColumnIDs::Source kind, ColumnIDs::Numbers const &numbers);
    bool VStreamableWrite(std::ostream &stream);
    bool VStreamableRead(std::istream &stream);

    boost::signals2::signal<void(MarkedColumnIDsManager *)> m_changed;
    bool m_streamed = false;
    std::list<OldMarks> m_old; // the newest last
    boost::shared_ptr<ColumnIDs> m_marks;
    boost::weak_ptr<NCProject const> m_project;
    AdditionalInformation m_information;
    bool m_batchMode = false;
    bool m_updateBlocked = false;
    std::array<boost::signals2::connection, 7> m_connections;
};
