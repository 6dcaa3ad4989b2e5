#include "utilities/DefaultSelection.h"
#include "platform/text/Exception.h"
#include "tests/support/Dice.h"
#include "tests/support/GroupingLocale.h"
#include "tests/support/RecordingProject.h"
#include "utilities/KestaProjectHandlerBase.h"

#include <boost/archive/polymorphic_text_iarchive.hpp>
#include <boost/archive/polymorphic_text_oarchive.hpp>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

namespace {

using ProjectUtilities::DefaultSelection;
using Names = std::vector<std::string>;
using Numbers = std::vector<std::uint32_t>;

// Terms of models 1 to 3 in X and Y, and the observations and variables of data sets, the prediction set in front.
Numbers const terms[][2] = {{{}, {}}, {{1, 2, 3}, {4, 5}}, {{2, 3}, {}}, {{}, {5}}};
Numbers const rows[] = {{8, 9}, {1, 2, 3, 4}, {7}}, columns[] = {{1, 2}, {1, 2, 3}, {5}};

bool IsAmong(Numbers const &numbers, std::uint32_t number) {
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

// What is kept, in the section or in the cache: 0 and empty are nothing. Of two, the second is that of Y, or predicted.
struct Kept {
    std::uint32_t term[2] = {}, observation[2] = {}, variable = 0;
    Names batches[2];
};

// The rules, on plain numbers: setters write both, getters take the cache, else the section, and check what they found.
struct Reference {
    Kept section, cache;

    int Term(int model, int ofY) {
        Numbers const &all = terms[model][ofY];
        std::uint32_t &cached = cache.term[ofY], found = cached != 0 ? cached : section.term[ofY];
        if (all.empty() && found != 0)
            return 1;
        cached = IsAmong(all, found) ? found : all.empty() ? 0 : all.front();
        return cached == 0 ? 1 : static_cast<int>(std::find(all.begin(), all.end(), cached) - all.begin()) + 1;
    }
    std::uint32_t Observation(Numbers const &all, int predicted) { // unchecked while cached
        std::uint32_t &cached = cache.observation[predicted], stored = section.observation[predicted];
        return cached = cached != 0 ? cached : IsAmong(all, stored) ? stored : all.front();
    }
    std::uint32_t ModelVariable(Numbers const &all) const { // not cached
        std::uint32_t const found = cache.variable != 0 ? cache.variable : section.variable;
        return all.empty() || IsAmong(all, found) ? found : all.front();
    }
    std::uint32_t DataVariable(Numbers const &all) { // the section has no say
        return cache.variable = IsAmong(all, cache.variable) ? cache.variable : all.front();
    }
    Names const &Batches(int predicted) {
        Names &cached = cache.batches[predicted];
        return cached = cached.empty() ? section.batches[predicted] : cached;
    }
    std::string Batch(int predicted) { // leaves the first name alone in the cache
        Names &cached = cache.batches[predicted], &stored = section.batches[predicted];
        if (cached.empty())
            cached = {stored.empty() ? "" : stored.front()};
        return cached.front();
    }
    void MoveToFront(std::string const &name, int predicted) {
        Names &stored = section.batches[predicted];
        if (auto const known = std::find(stored.begin(), stored.end(), name); known != stored.end())
            stored.erase(known);
        stored.insert(stored.begin(), name);
        cache.batches[predicted] = stored;
    }
};

DefaultSelection ThroughAnArchive(DefaultSelection const &defaults) {
    std::stringstream stream;
    {
        boost::archive::polymorphic_text_oarchive archive(stream);
        defaults.save(static_cast<boost::archive::polymorphic_oarchive &>(archive), 0);
    }
    DefaultSelection loaded(defaults.GetProject());
    boost::archive::polymorphic_text_iarchive archive(stream);
    loaded.load(static_cast<boost::archive::polymorphic_iarchive &>(archive), 7);
    return loaded;
}

} // namespace

TEST(DefaultSelection, KeepsWhatWasChosenLast) {
    auto const project = MakeRecordingProject();
    for (int model = 1; model <= 3; ++model) {
        project->AddModel(ModelTypeE::PLS, 1, 0, 0, 0);
        for (int const ofY : {0, 1})
            for (std::uint32_t const mother : terms[model][ofY])
                (ofY == 1 ? project->Model(model).y : project->Model(model).x).AppendTerm(ColumnTerm(mother));
        project->AddWorkset(model, rows[1], {});
        project->AddPredictions(model, rows[0]);
    }
    for (int dataSet = 0; dataSet <= 2; ++dataSet)
        project->AddData(dataSet, rows[dataSet], columns[dataSet]);
    DefaultSelection defaults(project);
    Reference reference;
    Dice dice(1);
    for (int step = 0; step < 20000; ++step) {
        int const model = dice(1, 3), two = dice(0, 1), index = dice(0, 4), dataSet = two == 1 ? 0 : dice(1, 2);
        auto const number = static_cast<std::uint32_t>(dice(0, 9));
        std::string const name = dice({"A", "B b", "C"});
        Names const names{name, dice({"D", "E"})};
        Names found;
        bool const predicted = two == 1, ofModel = dice(0, 1) == 1;
        Numbers const &ofTerms = terms[model][two], &ofRows = rows[ofModel && !predicted ? 1 : dataSet];
        std::function<void()> const operations[] = {
            [&] {
                predicted ? defaults.SetDefaultYVarIndex(model, index) : defaults.SetDefaultXVarIndex(model, index);
                if (index >= 1 && index <= static_cast<int>(ofTerms.size()))
                    reference.cache.term[two] = reference.section.term[two] =
                        ofTerms[static_cast<std::size_t>(index - 1)];
            },
            [&] {
                EXPECT_EQ(predicted ? defaults.GetDefaultYVarIndex(model) : defaults.GetDefaultXVarIndex(model),
                          reference.Term(model, two));
            },
            [&] {
                defaults.SetDefaultSelectedObservation(number, predicted);
                reference.cache.observation[two] = reference.section.observation[two] = number;
            },
            [&] {
                EXPECT_EQ(defaults.GetDefaultSelectedObservation(ofModel ? model : 0, dataSet, predicted),
                          reference.Observation(ofRows, two));
            },
            [&] {
                defaults.SetDefaultSelectedVariable(number);
                reference.cache.variable = reference.section.variable = number;
            },
            [&] {
                EXPECT_EQ(defaults.GetDefaultSelectedVariable(ofModel ? model : 0, dataSet, predicted),
                          ofModel ? reference.ModelVariable(terms[model][0])
                                  : reference.DataVariable(columns[dataSet]));
            },
            [&] {
                defaults.SetDefaultSelectedBatches(names, predicted);
                reference.cache.batches[two] = reference.section.batches[two] = names;
            },
            [&] {
                int const count = defaults.GetDefaultSelectedBatches(found, predicted);
                EXPECT_EQ(found, reference.Batches(two));
                EXPECT_EQ(count, static_cast<int>(found.size()));
            },
            [&] {
                defaults.SetDefaultSelectedBatch(name, predicted);
                reference.MoveToFront(name, two);
            },
            [&] { EXPECT_EQ(defaults.GetDefaultSelectedBatch(predicted), reference.Batch(two)); },
            [&] { defaults.clear(), reference.cache = {}; },
            [&] { defaults = DefaultSelection(project), reference.cache = {}; },
            [&] { project->GetSettingsSection("DefaultSelection")->Clear(), reference.section = {}; },
            [&] { defaults = ThroughAnArchive(defaults); }};
        operations[dice(0, 13)]();
    }
}

TEST(DefaultSelection, WritesTermsWithGapsAndReadsLagsAsMothers) {
    GroupingLocale const grouping;
    auto const project = MakeRecordingProject();
    project->AddModel(ModelTypeE::PCA, 1, 0, 0, 0);
    auto const section = project->GetSettingsSection("DefaultSelection")->CreateSubSection("XTerm");
    // Whether the section is read as the term, which is the second one of the model.
    auto const readsAs = [&](ColumnTerm const &term) {
        project->Model(1).x = ColumnTerms({ColumnTerm(99), term});
        return DefaultSelection(project).GetDefaultXVarIndex(1) == 2;
    };
    auto const joined = [](auto const &numbers, bool always) { // "-": no such list
        std::string text;
        for (auto const number : numbers)
            text += (text.empty() ? "" : ";") + std::to_string(number);
        return always || text.find_first_not_of("0;") != std::string::npos ? text : "-";
    };
    Dice dice(2);
    for (int i = 0; i < 300; ++i) {
        Numbers mothers;
        std::vector<int> lags, settings;
        for (int size = dice(1, 3); size > 0; --size) {
            mothers.push_back(dice({5u, 7u, 1234u}));
            lags.push_back(dice({0, 0, 0, 1, 2345}));
            settings.push_back(dice({0, 0, 0, 2}));
        }
        ColumnTerm const term(mothers, lags, settings);
        DefaultSelection(project).SetDefaultXTerm(&term);
        if (mothers.size() == 3)
            mothers[2] = mothers[1]; // the second mother stands for all that follow
        std::string const ofLags = joined(lags, false);
        for (auto const &[key, expected] : {std::pair("MotherVariables", joined(mothers, true)),
                                            {"Lags", ofLags},
                                            {"QualSetting", joined(settings, false)}}) {
            std::string text = "-";
            section->ReadKey(key, text);
            EXPECT_EQ(text, expected) << key;
        }
        EXPECT_TRUE(readsAs(ofLags == "-" ? ColumnTerm(mothers, {}, settings)
                                          : ColumnTerm(Numbers(lags.begin(), lags.end()), {}, settings)));
    }
    // Stored texts, null for none, and the mothers that are read; none: no term.
    struct {
        char const *mothers, *lags;
        Numbers expected;
    } const read[] = {{"7;8;", nullptr, {7, 8}}, {"7;8", "", {7, 8}}, {"", "7", {7}},    {"", nullptr, {}},
                      {"5", "7;8x9", {7, 8}},    {"5", "7,8", {7}},   {nullptr, "7", {}}};
    for (auto const &[mothers, lags, expected] : read) {
        section->Clear();
        for (auto const &[key, text] : {std::pair("MotherVariables", mothers), {"Lags", lags}})
            if (text)
                section->WriteKey(key, text);
        EXPECT_EQ(readsAs(ColumnTerm(Numbers{7}, {}, {})), expected == Numbers{7}) << lags;
        EXPECT_EQ(readsAs(ColumnTerm(Numbers{7, 8}, {}, {})), expected == Numbers({7, 8})) << mothers;
    }
}

TEST(DefaultSelection, NeedsItsProjectAndData) {
    auto project = MakeRecordingProject();
    DefaultSelection defaults(project);
    Names names;
    try {
        defaults.GetDefaultSelectedObservation(0, 99, false);
        FAIL();
    } catch (NCError const &error) {
        EXPECT_STREQ(error.what(), "The dataset could not be loaded.");
        EXPECT_EQ(error.GetLevel(), NCError::Error);
    }
    EXPECT_THROW(defaults.GetDefaultSelectedVariable(0, 99, false), NCError);
    EXPECT_THROW(defaults.GetDefaultSelectedObservation(9, 0, true), NCError);
    defaults.SetDefaultXVarIndex(9, 1);
    EXPECT_EQ(defaults.GetDefaultXVarIndex(9), 1);
    project.reset();
    for (std::function<void()> const &operation : std::initializer_list<std::function<void()>>{
             [&] { defaults.GetProject(); }, [&] { defaults.GetDefaultXVarIndex(1); },
             [&] { defaults.SetDefaultYVarIndex(1, 1); }, [&] { defaults.GetDefaultSelectedObservation(1, 0, false); },
             [&] { defaults.SetDefaultSelectedObservation(1, false); }, [&] { defaults.SetDefaultSelectedVariable(1); },
             [&] { defaults.GetDefaultSelectedVariable(1, 0, false), defaults.GetDefaultSelectedBatch(true); },
             [&] { defaults.GetDefaultSelectedBatches(names, false); },
             [&] { defaults.SetDefaultSelectedBatch("b", true); }})
        EXPECT_THROW(operation(), boost::bad_weak_ptr);
}

TEST(DefaultSelection, BindsToTheActiveProjectOfTheApplication) {
    try {
        DefaultSelection const none;
        FAIL();
    } catch (Exception const &error) {
        EXPECT_STREQ(error.what(), "KestaProjectHandler not initialized");
    }
    class Handler final : public KestaProjectHandlerBase {
    public:
        boost::shared_ptr<NCProject> project = MakeRecordingProject();
        boost::shared_ptr<NCProject> GetActiveProject() const override { return project; }
        boost::shared_ptr<NCProject> NCGetProject(int) const override { return project; }
    };
    static Handler handler;
    EXPECT_EQ(&KestaProjectHandlerBase::Instance(), &handler);
    EXPECT_EQ(DefaultSelection().GetProject(), handler.project);
}
