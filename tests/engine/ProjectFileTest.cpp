#include "engine/ProjectFile.h"
#include "engine/data/Recipe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <fstream>
#include <functional>
#include <random>

#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

namespace engine {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

// A folder of its own for each test.
class ProjectFileTest : public testing::Test {
protected:
    ProjectFileTest() {
        std::string pattern = (std::filesystem::temp_directory_path() / "project-XXXXXX").string();
        folder = mkdtemp(pattern.data());
        path = folder / "a.project";
    }
    ~ProjectFileTest() override { std::filesystem::remove_all(folder); }

    std::filesystem::path folder;
    std::filesystem::path path;
};

std::span<std::byte const> Bytes(std::string_view text) {
    return std::as_bytes(std::span(text));
}

std::string Text(std::vector<std::byte> const &bytes) {
    return {reinterpret_cast<char const *>(bytes.data()), bytes.size()};
}

// Data to be stored, every figure derived from the seed.
struct Table {
    explicit Table(int seed, std::size_t rows = 3, std::size_t columnCount = 2) {
        observations = {{"ObsID", {}}, {"Site", {}}};
        variables = {{"VarID", {}}, {"Unit", {}}};
        for (std::size_t row = 0; row < rows; ++row) {
            observations[0].texts.Append("o" + std::to_string(seed + row));
            observations[1].texts.Append(row % 2 ? "" : "\xC3\xB8st");
        }
        for (std::size_t column = 0; column < columnCount; ++column) {
            variables[0].texts.Append("v" + std::to_string(seed + column));
            variables[1].texts.Append("mm");
            columns.emplace_back(rows, static_cast<float>(seed) + 0.25f * static_cast<float>(column));
            columns.back().front() = -99.0f;
        }
    }
    NewDataSet Named(std::string_view name) const { return {name, observations, variables, columns}; }
    NewDataSet ToPredict(std::string_view name = "") const {
        return {name, observations, variables, columns, DataSetKind::Prediction};
    }

    std::vector<TextColumn> observations;
    std::vector<TextColumn> variables;
    std::vector<std::vector<float>> columns;
};

std::vector<int> Numbers(ProjectFile const &file) {
    std::vector<int> numbers;
    for (DataSetRecord const &dataSet : file.DataSets())
        numbers.push_back(dataSet.number);
    return numbers;
}

// All that the file holds, as text.
std::string Content(ProjectFile const &file) {
    std::ostringstream stream;
    if (int const current = file.CurrentPredictionSet())
        stream << "current " << current << "\n";
    auto const show = [&](std::vector<TextColumn> const &columns) {
        for (TextColumn const &column : columns)
            stream << column.name << "=" << Text(column.texts.Pack()) << ";";
    };
    for (DataSetRecord const &set : file.DataSets()) {
        stream << set.number << set.name << static_cast<int>(set.kind) << "/" << set.observations << "\n";
        show(file.ObservationIdentifiers(set.number));
        show(file.VariableIdentifiers(set.number));
        for (std::size_t variable = 1; variable <= set.variables; ++variable)
            for (float const value : file.Column(set.number, static_cast<int>(variable)))
                stream << value << " ";
    }
    for (ModelRecord const &model : file.Models()) {
        stream << model.number << model.name << Text(file.Definition(model.number));
        for (int const dataSet : model.dataSets)
            stream << " " << dataSet;
        stream << Text(file.Results(model.number).value_or(std::vector<std::byte>())) << "\n";
    }
    for (std::string const &name : file.SectionNames())
        stream << name << "=" << *file.Section(name) << "\n";
    for (std::string const &name : file.PlotNames())
        stream << name << ":" << file.Plot(name) << "\n";
    return stream.str();
}

void Fill(ProjectFile &file, std::size_t rows = 3) {
    file.AddDataSet(Table(1, rows).Named("first"));
    int const model = file.AddModel("M", std::vector{1}, Bytes("definition"));
    file.SetResults(model, Bytes("results"));
    file.AddDataSet(Table(5).ToPredict());
    file.SetSection("Plot", "<a/>");
    file.SetSection("Other", "");
    file.SetPlot("scores", "<t/>");
    file.SetPlot("loadings", "<p/>");
}

TEST_F(ProjectFileTest, KeepsEverything) {
    Table const table(1);
    std::string written;
    {
        ProjectFile file = ProjectFile::Create(path);
        Fill(file);
        written = Content(file);
    }
    EXPECT_EQ(Content(ProjectFile::OpenToRead(path)), written);
    EXPECT_FALSE(std::filesystem::exists(path.string() + "-wal") || std::filesystem::exists(path.string() + "-shm"));
    ProjectFile const file = ProjectFile::OpenToRead(path);
    EXPECT_EQ(file.ObservationIdentifiers(1), table.observations);
    EXPECT_EQ(file.VariableIdentifiers(1), table.variables);
    EXPECT_EQ(file.Column(1, 2), table.columns[1]);
    EXPECT_EQ(file.CurrentPredictionSet(), 2);
    EXPECT_EQ(Text(file.Definition(1)), "definition");
    EXPECT_EQ(Text(*file.Results(1)), "results");
    EXPECT_THAT(file.SectionNames(), ElementsAre("Other", "Plot"));
    EXPECT_EQ(file.Section("Plot"), "<a/>");
    EXPECT_EQ(file.Section("none"), std::nullopt);
    std::vector<std::string> names;
    for (auto const &entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename());
    EXPECT_THAT(names, testing::Contains("a.project")) << "and no lock or draft";
    EXPECT_THAT(names, testing::Not(testing::Contains(HasSubstr(".lock"))));
}

TEST_F(ProjectFileTest, ChangesAndDeletes) {
    ProjectFile file = ProjectFile::Create(path);
    Fill(file);
    EXPECT_EQ(file.AddDataSet(Table(6).ToPredict("again")), 3);
    file.RenameDataSet(3, "kept");
    EXPECT_EQ(file.DataSet(3).name, "kept");
    EXPECT_EQ(file.AddDataSet(Table(7).Named("data")), 4);
    EXPECT_EQ(file.AddDataSet(Table(8).ToPredict("too")), 5);
    EXPECT_THAT(Numbers(file), ElementsAre(1, 2, 3, 4, 5));
    EXPECT_EQ(file.CurrentPredictionSet(), 5);
    file.UsePredictionSet(2);
    file.DeleteDataSet(5);
    EXPECT_EQ(file.CurrentPredictionSet(), 2);
    file.DeleteDataSet(2);
    EXPECT_EQ(file.CurrentPredictionSet(), 3) << "the newest of those left";

    EXPECT_EQ(file.AddModel("N", std::vector{3, 1}, {}), 2);
    file.ChangeModel(1, "M2", std::vector{1}, Bytes("new"));
    EXPECT_EQ(Text(file.Definition(1)) + Text(*file.Results(1)), "newresults");
    file.DropResults(1);
    EXPECT_EQ(file.Results(1), std::nullopt);
    std::string const before = Content(file);
    EXPECT_THAT([&] { file.DeleteDataSet(3); },
                ThrowsMessage<NCError>("Data set 3 can't be deleted: model 2 is made of it."));
    EXPECT_EQ(Content(file), before);

    file.DeleteModel(2);
    file.DeleteModel(1);
    for (int const number : {1, 3, 4})
        file.DeleteDataSet(number);
    file.DeleteSection("Plot");
    EXPECT_EQ(Content(file), "Other=\nscores:<t/>\nloadings:<p/>\n");
    file.SetPlot("a", "<a/>");
    file.SetPlot("scores", "<u/>");
    file.RenamePlot("loadings", "\"<&'\xC3\xB8");
    file.RenamePlot("a", "a");
    EXPECT_EQ(Content(file), "Other=\nscores:<u/>\n\"<&'\xC3\xB8:<p/>\na:<a/>\n") << "all keep their places";
    for (std::string const &plot : file.PlotNames())
        file.DeletePlot(plot);
    EXPECT_EQ(Content(file), "Other=\n");
    EXPECT_EQ(file.AddDataSet(Table(1).Named("")), 6) << "numbers are not given again";
    EXPECT_EQ(file.AddModel("", {}, {}), 3);
}

TEST_F(ProjectFileTest, TellsWhatCannotBeDone) {
    ProjectFile file = ProjectFile::Create(path);
    Fill(file);
    std::string const content = Content(file);
    ProjectFile reader = ProjectFile::OpenToRead(path);
    std::string const name = path.string();
    struct {
        std::function<void()> action;
        std::string message;
    } const cases[] = {
        {[&] { ProjectFile::Create(folder / "a.project.d/../a.project"); }, "open for writing in another program."},
        {[&] { ProjectFile::OpenToWrite(path); }, "The project " + name + " is open for writing in another program."},
        {[&] { ProjectFile::OpenToRead(folder / "none"); }, "doesn't exist."},
        {[&] { reader.SetSection("a", "b"); }, "The project " + name + " is open for reading only."},
        {[&] { reader.AddDataSet(Table(1).Named("")); }, "is open for reading only."},
        {[&] { reader.DeleteModel(1); }, "is open for reading only."},
        {[&] { file.Column(7, 1); }, "The project " + name + " has no data set 7."},
        {[&] { file.Column(1, 3); }, "Data set 1 has 2 variables, asked was variable 3."},
        {[&] { file.Definition(7); }, "has no model 7."},
        {[&] { file.Results(7); }, "has no model 7."},
        {[&] { file.SetResults(7, {}); }, "has no model 7."},
        {[&] { file.DeleteModel(7); }, "has no model 7."},
        {[&] {
             file.AddModel("", std::vector{1, 8}, {});
         },
         "has no data set 8."},
        {[&] { file.UsePredictionSet(9); }, "has no data set 9."},
        {[&] { file.UsePredictionSet(1); }, "Data set 1 is no prediction set."},
        {[&] { file.DeleteDataSet(1); }, "Data set 1 can't be deleted: model 1 is made of it."},
        {[&] { file.Plot("none"); }, "The project " + name + " has no plot \"none\"."},
        {[&] { file.DeletePlot(""); }, "has no plot \"\"."},
        {[&] { file.RenamePlot("none", "scores"); }, "has no plot \"none\"."},
        {[&] { file.RenamePlot("scores", "loadings"); }, "has a plot \"loadings\" already."},
        {[&] { reader.SetPlot("a", "b"); }, "is open for reading only."},
        {[&] { file.AddDataSet(Table(1).Named(""), Progress([](double done) { return done < 0.4; })); }, "cancelled"},
    };
    for (auto const &[action, message] : cases)
        EXPECT_THAT(action, ThrowsMessage<NCError>(HasSubstr(message))) << message;
    Table uneven(1);
    uneven.columns[1].pop_back();
    EXPECT_THROW(file.AddDataSet(uneven.Named("")), NCInternalError);
    EXPECT_EQ(Content(file), content);
    EXPECT_EQ(Content(reader), content);
}

TEST_F(ProjectFileTest, TransactionsAreKeptOrTakenBackWhole) {
    ProjectFile file = ProjectFile::Create(path);
    ProjectFile const reader = ProjectFile::OpenToRead(path);
    auto const change = [&](bool commitInner, bool commitOuter) {
        Transaction outer(file);
        file.SetSection("a", "outer");
        {
            Transaction inner(file);
            file.SetSection("b", "inner");
            if (commitInner)
                inner.Commit();
        }
        EXPECT_EQ(reader.SectionNames().size(), 0u);
        if (commitOuter)
            outer.Commit();
    };
    change(true, false);
    EXPECT_THAT(file.SectionNames(), ElementsAre());
    Transaction const oneState(reader);
    EXPECT_THAT(reader.SectionNames(), ElementsAre());
    change(false, true);
    EXPECT_THAT(file.SectionNames(), ElementsAre("a"));
    change(true, true);
    EXPECT_THAT(file.SectionNames(), ElementsAre("a", "b"));
    EXPECT_THAT(reader.SectionNames(), ElementsAre());
}

// Starts `work` in a process of its own, kills it some time after that many integers came through its pipe, and answers
// the last one.
int KillDuring(std::function<void(int pipe)> const &work, int reports, int microseconds) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    pid_t const child = fork();
    if (child == 0) {
        work(ends[1]);
        _exit(1);
    }
    close(ends[1]);
    int last = 0;
    for (int report = 0; report < reports; ++report)
        if (read(ends[0], &last, sizeof last) != sizeof last)
            ADD_FAILURE() << "the child ended by itself";
    usleep(static_cast<useconds_t>(microseconds));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    while (read(ends[0], &last, sizeof last) == sizeof last) {
    }
    close(ends[0]);
    return last;
}

void Report(int pipe, int value) {
    if (write(pipe, &value, sizeof value) != sizeof value)
        _exit(2);
}

// Whatever the moment, the file holds the last change that was told as done, or the one after it, and that one whole.
TEST_F(ProjectFileTest, SurvivesBeingKilledWhileSaving) {
    ProjectFile::Create(path);
    auto const writeForever = [&](int pipe) {
        ProjectFile file = ProjectFile::OpenToWrite(path);
        for (int state = file.Section("state") ? std::stoi(*file.Section("state")) + 1 : 1;; ++state) {
            Transaction change(file);
            for (DataSetRecord const &old : file.DataSets())
                file.DeleteDataSet(old.number);
            file.AddDataSet(Table(state, 4000, 5).Named(std::to_string(state)));
            file.SetSection("state", std::to_string(state));
            change.Commit();
            Report(pipe, state);
        }
    };
    for (int round = 0; round < 24; ++round) {
        int const told = KillDuring(writeForever, 1 + round % 3, 211 * round);
        ProjectFile const file = ProjectFile::OpenToWrite(path);
        int const state = std::stoi(file.Section("state").value());
        EXPECT_TRUE(state == told || state == told + 1) << state << " after " << told;
        Table const expected(state, 4000, 5);
        ASSERT_EQ(file.DataSets().size(), 1u);
        DataSetRecord const set = file.DataSets().front();
        EXPECT_EQ(set.name, std::to_string(state));
        EXPECT_EQ(file.ObservationIdentifiers(set.number), expected.observations);
        for (int variable = 1; variable <= 5; ++variable)
            EXPECT_EQ(file.Column(set.number, variable), expected.columns[static_cast<std::size_t>(variable - 1)]);
    }
}

TEST_F(ProjectFileTest, SurvivesBeingKilledWhileCreating) {
    auto const name = [&](int number) { return folder / std::to_string(number); };
    int first = 1;
    for (int round = 0; round < 12; ++round) {
        int const told = KillDuring(
            [&](int pipe) {
                for (int number = first;; ++number) {
                    ProjectFile::Create(name(number), [](ProjectFile &file) { Fill(file); });
                    Report(pipe, number);
                }
            },
            1, 397 * round);
        first = told + 1;
        if (std::filesystem::exists(name(first))) {
            EXPECT_EQ(ProjectFile::OpenToWrite(name(first++)).DataSets().size(), 2u);
        }
    }
}

TEST_F(ProjectFileTest, OneProcessWritesWhileOthersRead) {
    ProjectFile::Create(path);
    KillDuring(
        [&](int pipe) {
            ProjectFile file = ProjectFile::OpenToWrite(path);
            file.SetSection("a", "b");
            Report(pipe, 1);
            pause();
        },
        1, 0);
    EXPECT_NO_THROW(ProjectFile::OpenToWrite(path)) << "the lock of a killed writer holds nobody back";
    ProjectFile writer = ProjectFile::OpenToWrite(path);
    int const verdict = KillDuring(
        [&](int pipe) {
            EXPECT_THAT([&] { ProjectFile::OpenToWrite(path); }, ThrowsMessage<NCError>(HasSubstr("another program")));
            EXPECT_EQ(ProjectFile::OpenToRead(path).Section("a"), "b");
            Report(pipe, HasFailure() ? 2 : 1);
            pause();
        },
        1, 0);
    EXPECT_EQ(verdict, 1);
    writer.SetSection("a", "c");
    EXPECT_EQ(ProjectFile::OpenToRead(path).Section("a"), "c");
}

TEST_F(ProjectFileTest, IsReadWhereNothingCanBeWritten) {
    using std::filesystem::perms;
    auto const odd = folder / "50%?#.project";
    std::string written;
    {
        ProjectFile file = ProjectFile::Create(odd);
        Fill(file);
        written = Content(file);
    }
    perms const before = std::filesystem::status(folder).permissions();
    std::filesystem::permissions(folder, perms(0555));
    int const verdict = KillDuring(
        [&](int pipe) {
            constexpr uid_t nobody = 65534; // nothing is forbidden to root
            bool const isReader = geteuid() != 0 || setuid(nobody) == 0;
            Report(pipe, isReader && Content(ProjectFile::OpenToRead(odd)) == written ? 1 : 2);
            pause();
        },
        1, 0);
    std::filesystem::permissions(folder, before);
    EXPECT_EQ(verdict, 1);
}

std::string ReadFile(std::filesystem::path const &path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void WriteFile(std::filesystem::path const &path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string Sql(std::filesystem::path const &path, char const *sql) {
    sqlite3 *handle = nullptr;
    sqlite3_open(path.c_str(), &handle);
    char *error = nullptr;
    sqlite3_exec(handle, sql, nullptr, nullptr, &error);
    std::string const text = error ? error : "";
    sqlite3_free(error);
    sqlite3_close(handle);
    return text;
}

TEST_F(ProjectFileTest, RefusesWhatIsNoProject) {
    {
        ProjectFile file = ProjectFile::Create(path);
        Fill(file);
    }
    std::string const whole = ReadFile(path);
    struct {
        std::string bytes;
        char const *sql;
        char const *message;
    } const cases[] = {
        {"", "", "is not a project."},
        {"a,b\n1,2\n", "", "is not a project."},
        {std::string(20000, '\0'), "", "is not a project."},
        {"", "CREATE TABLE data_set (number)", "is not a project."},
        {whole.substr(0, whole.size() / 2), "", "is damaged"},
        {whole.substr(0, 100), "", "project"},
        {whole, "PRAGMA user_version = 4", "has format 4, expected format 3: a newer version"},
        {whole, "PRAGMA user_version = 1", "has format 1, expected format 3: an older version"},
        {whole, "DROP TABLE model", "is damaged: no such table: model."},
        {whole, "DELETE FROM counter", "is damaged: the table of counters is empty."},
        {whole, "UPDATE data_set SET name = 'other'", "is damaged: the checksum of data set 1 is wrong."},
        {whole, "UPDATE model SET fitted = 0", "is damaged: the checksum of model 1 is wrong."},
        {whole, "UPDATE section SET text = 'x'", "is damaged: the checksum of section Other is wrong."},
        {whole, "UPDATE plot SET text = 'x' WHERE position = 2", "is damaged: the checksum of plot loadings is wrong."},
        {whole, "ALTER TABLE plot DROP COLUMN text", "is damaged"},
        {whole, "DELETE FROM block WHERE part = 1", "is damaged: a part of data set 1 is missing."},
        {whole, "UPDATE block SET bytes = x'00' WHERE part = 5",
         "is damaged: the checksum of a part of model 1 is wrong."},
        {whole, "UPDATE block SET position = position + 5 WHERE part = 2",
         "is damaged: a part of data set 1 is missing."},
    };
    for (auto const &[bytes, sql, message] : cases) {
        WriteFile(path, bytes);
        EXPECT_EQ(Sql(path, sql), "");
        EXPECT_THAT([&] { Content(ProjectFile::OpenToRead(path)); }, ThrowsMessage<NCError>(HasSubstr(message)))
            << message;
    }
}

// A flipped bit or an overwritten stretch anywhere is told, or does no harm.
TEST_F(ProjectFileTest, NeverReadsDamagedContent) {
    std::string written;
    {
        ProjectFile file = ProjectFile::Create(path);
        Fill(file, 9000);
        written = Content(file);
    }
    std::string const whole = ReadFile(path);
    std::mt19937 random(1);
    int told = 0;
    int const rounds = 400;
    for (int round = 0; round < rounds; ++round) {
        std::string bytes = whole;
        // every other round hits one of the pages that hold the records
        std::size_t const at = random() % (round % 2 ? bytes.size() : std::size_t(8) * 8192);
        std::size_t const length = round % 4 < 2 ? 1 : std::min<std::size_t>(random() % 200, bytes.size() - at);
        for (std::size_t index = 0; index < length; ++index)
            bytes[at + index] ^= static_cast<char>(1 << random() % 8);
        WriteFile(path, bytes);
        try {
            EXPECT_EQ(Content(ProjectFile::OpenToRead(path)), written) << "byte " << at << ", length " << length;
        } catch (NCError const &) {
            ++told;
        }
    }
    EXPECT_GT(told, rounds / 4);
}

} // namespace
// Of two X terms.
engine::CorrectionRecipe Corrected(engine::Index loadings) {
    engine::CorrectionRecipe recipe{1, {}, {1, 2}, {3, 4}, {}};
    recipe.definition.kind = engine::ModelKind::Pls;
    recipe.definition.xTerms.resize(2);
    recipe.definition.yTerms.resize(1);
    recipe.definition.rows = {0, 2, 5};
    engine::Matrix const vectors = engine::Matrix::Constant(loadings, 1, 0.5);
    recipe.correction = {vectors, vectors, vectors, engine::Matrix::Constant(3, 1, 2)};
    return recipe;
}

TEST(Recipe, SavesAndLoads) {
    using engine::Recipe;
    for (Recipe const &recipe :
         {Recipe{engine::BatchLevelRecipe{1, {{2, 3, 1, 0, 50}, {3, 2, 0, 0, 20}}, 4}, 5, 6},
          Recipe{engine::HierarchyRecipe{{{1, 14, 2}, {2, 16, 0}}, {{1, 7}}}}, Recipe{Corrected(2)},
          Recipe{engine::CompressionRecipe{1, {0, 1, 2}, {3}, 2, 1, {0, 3}, true}, 2, 3}}) {
        std::string const saved = recipe.Save();
        EXPECT_EQ(Recipe::Load(saved), recipe);
        EXPECT_THROW(Recipe::Load(saved.substr(0, saved.size() - 1)), NCError);
    }
    EXPECT_THROW(Recipe::Load(Recipe{Corrected(3)}.Save()), NCError) << "loadings of more terms than there are";
    EXPECT_THROW(Recipe::Load(Recipe{engine::HierarchyRecipe{{{1, 13, 2}}, {}}}.Save()), NCError);
    EXPECT_THROW(Recipe::Load(Recipe{engine::CompressionRecipe{1, {0, 1, 2}, {}, 2, 1, {4}}}.Save()), NCError);
    EXPECT_THROW(Recipe::Load(Recipe{engine::BatchLevelRecipe{1, {{2, 3, 1, -1, 50}}, 4}}.Save()), NCError);
}

} // namespace engine
