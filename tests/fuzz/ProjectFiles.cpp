#include "building/CreateProjectData.h"
#include "catalogue/ProjectVectorHandler.h"
#include "engine/storage/Checksum_internal.h"
#include "engine/storage/Database_internal.h"
#include "platform/storage/ConfigurationSection.h"
#include "platform/text/Exception.h"
#include "tests/engine/RegistryWalk.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/RealProject.h"
#include "tests/fuzz/Sealed.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <vector>

#include <sqlite3.h>

namespace {

using engine::Checksum;
using engine::Database;
using engine::Statement;

struct Block {
    std::int64_t part, owner, position;
    std::string name, bytes;

    // Those that end in a checksum of their own: definitions, results and recipes.
    bool IsSealed() const { return part == 4 || part == 5 || part == 7; }
};

// Numbers that an input tells; zeros at its end.
class Numbers {
public:
    explicit Numbers(std::string const &bytes) : m_bytes(bytes) {}

    bool AtEnd() const { return m_at >= m_bytes.size(); }
    std::size_t Take(std::size_t count) {
        std::size_t number = 0;
        for (char const byte : TakeText(count))
            number = number << 8 | static_cast<unsigned char>(byte);
        return number;
    }
    std::string TakeText(std::size_t count) {
        std::string const text = AtEnd() ? std::string() : m_bytes.substr(m_at, count);
        m_at += count;
        return text;
    }

private:
    std::string m_bytes;
    std::size_t m_at = 0;
};

// Overwrites bytes, or with `cut` drops what is behind them too.
void Change(std::string &bytes, Numbers &numbers, bool cut) {
    std::size_t const at = numbers.Take(2) % (bytes.size() + 1);
    std::string const text = numbers.TakeText(numbers.Take(1) % 32);
    bytes.replace(at, cut ? bytes.npos : std::min(text.size(), bytes.size() - at), text);
}

std::string AsText(std::span<std::byte const> bytes) {
    return {reinterpret_cast<char const *>(bytes.data()), bytes.size()};
}

std::span<std::byte const> AsBytes(std::string const &text) {
    return std::as_bytes(std::span(text));
}

// A project's file, to be damaged copy by copy.
class GoodFile {
public:
    GoodFile() : m_work(m_folder / "work.dsp") {
        MakeRealProject(m_work)->GetSettingsSection("DefaultSelection")->WriteKey("Variable", std::string("1"));
        Open().Execute("PRAGMA journal_mode = DELETE; VACUUM;");
        sqlite3_vfs_register(sqlite3_vfs_find("unix-none"), 1); // half of the time would go into locks
        Database database = Open();
        for (Statement row(database, "SELECT part, owner, position, name, bytes FROM block"); row.Step();)
            m_blocks.push_back(
                {row.Integer(1), row.Integer(2), row.Integer(3), std::string(row.Text(4)), AsText(row.Bytes(5))});
        std::ifstream file(m_work, std::ios::binary);
        m_bytes.assign(std::istreambuf_iterator<char>(file), {});
    }

    std::filesystem::path const &Damaged(std::string const &input) {
        Numbers numbers(input);
        std::string bytes = m_bytes;
        bool const raw = numbers.Take(1) % 8 == 0;
        while (raw && !numbers.AtEnd())
            bytes.replace(numbers.Take(3) % bytes.size(), 1, numbers.TakeText(1));
        std::ofstream(m_work, std::ios::binary) << bytes;
        if (!raw) {
            Database database = Open();
            database.Execute("PRAGMA synchronous = OFF; PRAGMA journal_mode = OFF; BEGIN");
            while (!numbers.AtEnd())
                ChangeOne(database, numbers);
            Seal(database);
            database.Execute("COMMIT");
        }
        return m_work;
    }

private:
    Database Open() const { return Database(m_work.string(), "work", Database::Mode::ReadWrite); }

    void ChangeOne(Database &database, Numbers &numbers) {
        static constexpr char const *fields[] = {"UPDATE data_set SET kind = ?1 WHERE number = ?2",
                                                 "UPDATE data_set SET observations = ?1 WHERE number = ?2",
                                                 "UPDATE data_set SET variables = ?1 WHERE number = ?2",
                                                 "UPDATE data_set SET observation_identifiers = ?1 WHERE number = ?2",
                                                 "UPDATE data_set SET variable_identifiers = ?1 WHERE number = ?2",
                                                 "UPDATE data_set SET date_variables = ?1 WHERE number = ?2",
                                                 "UPDATE OR IGNORE data_set SET number = ?1 WHERE number = ?2",
                                                 "UPDATE OR IGNORE model SET number = ?1 WHERE number = ?2",
                                                 "UPDATE model SET fitted = ?1 WHERE number = ?2",
                                                 "UPDATE counter SET next_model = ?1 WHERE ?2 >= 0",
                                                 "UPDATE counter SET next_data_set = ?1 WHERE ?2 >= 0",
                                                 "UPDATE counter SET current_prediction_set = ?1 WHERE ?2 >= 0"};
        std::size_t const what = numbers.Take(1);
        if (what >= 32)
            return ChangeBlock(database, m_blocks[what % m_blocks.size()], numbers);
        if (what < std::size(fields)) {
            std::int64_t const owner = static_cast<std::int64_t>(numbers.Take(1));
            return Statement(database, fields[what], static_cast<std::int32_t>(numbers.Take(4)), owner).Run();
        }
        std::int64_t const owner = static_cast<std::int64_t>(numbers.Take(1));
        std::string const text = numbers.TakeText(numbers.Take(1));
        if (what % 3 == 0)
            Statement(database, "UPDATE section SET text = ? WHERE name IN (SELECT name FROM section LIMIT 1 OFFSET ?)",
                      text, owner)
                .Run();
        else if (what % 3 == 1)
            Statement(database, "UPDATE model SET data_sets = ? WHERE number = ?", AsBytes(text), owner).Run();
        else
            Statement(database, "UPDATE data_set SET name = ? WHERE number = ?", text, owner).Run();
    }

    void ChangeBlock(Database &database, Block const &block, Numbers &numbers) {
        std::size_t const how = numbers.Take(1);
        std::string name = block.name, bytes = block.bytes;
        if (how % 8 == 7) {
            Change(name, numbers, true);
        } else if (block.IsSealed()) {
            std::string members = bytes.substr(8, bytes.size() - 16);
            for (std::size_t count = how % 7; count < 7 && !numbers.AtEnd(); ++count)
                Change(members, numbers, how >= 128);
            bytes = Sealed(bytes.substr(0, 4), static_cast<unsigned char>(bytes[4]), members);
        } else {
            Change(bytes, numbers, how >= 128);
        }
        auto const sum = Checksum().Add(block.part).Add(block.owner).Add(block.position).Add(name).Add(AsBytes(bytes));
        Statement(database,
                  "UPDATE block SET name = ?, bytes = ?, checksum = ? WHERE part = ? AND owner = ? AND position = ?",
                  std::string_view(name), AsBytes(bytes), sum.Value(), block.part, block.owner, block.position)
            .Run();
    }

    // Gives all records the checksums that belong to them.
    static void Seal(Database &database) {
        std::vector<std::pair<std::int64_t, std::int64_t>> dataSets, models;
        std::vector<std::pair<std::int64_t, std::string>> sections;
        for (Statement row(database, "SELECT * FROM data_set"); row.Step();) {
            std::int64_t const numbers[] = {row.Integer(1), row.Integer(3), row.Integer(4), row.Integer(5),
                                            row.Integer(6), row.Integer(7), row.Integer(8)};
            dataSets.emplace_back(Checksum().Add(std::as_bytes(std::span(numbers))).Add(row.Text(2)).Value(),
                                  row.Integer(1));
        }
        for (Statement row(database, "SELECT * FROM model"); row.Step();) {
            auto const sources = row.Bytes(3).first(row.Bytes(3).size() / 4 * 4);
            Checksum sum;
            sum.Add(row.Integer(1)).Add(std::int64_t{row.Integer(4) != 0}).Add(sources).Add(row.Text(2));
            models.emplace_back(sum.Value(), row.Integer(1));
        }
        for (Statement row(database, "SELECT name, text FROM section"); row.Step();)
            sections.emplace_back(Checksum().Add(row.Text(1)).Add(row.Text(2)).Value(), row.Text(1));
        for (auto const &sum : sections)
            Statement(database, "UPDATE section SET checksum = ? WHERE name = ?", sum.first, sum.second).Run();
        for (auto const &sum : dataSets)
            Statement(database, "UPDATE data_set SET checksum = ? WHERE number = ?", sum.first, sum.second).Run();
        for (auto const &sum : models)
            Statement(database, "UPDATE model SET checksum = ? WHERE number = ?", sum.first, sum.second).Run();
        Statement counter(database, "SELECT next_data_set, next_model, current_prediction_set FROM counter");
        if (!counter.Step())
            return;
        std::int64_t const counters[] = {counter.Integer(1), counter.Integer(2), counter.Integer(3)};
        counter.Reset();
        Statement(database, "UPDATE counter SET checksum = ?",
                  Checksum().Add(std::as_bytes(std::span(counters))).Value())
            .Run();
    }

    TemporaryFolder m_folder;
    std::filesystem::path m_work;
    std::vector<Block> m_blocks;
    std::string m_bytes;
};

// What is asked of a project may end in an error, one by one.
template <typename Ask>
void Try(Ask const &ask) {
    try {
        ask();
    } catch (NCError const &) {
    }
}

void AskDataSet(engine::Project const &project, int number) {
    auto const data = project.GetDataSet(number);
    for (std::uint32_t const variable : data->GetVariables())
        data->GetVariable(variable);
    for (ObservationInfo const &observation : data->GetObservations())
        data->GetObservation(observation.GetUniqueID());
}

// One in `step` of the statistics of all models.
void AskStatistics(boost::shared_ptr<engine::Project> const &project, std::size_t step, std::size_t first) {
    ProjectDataUtilities::CreateProjectData const create(*project);
    std::size_t at = 0;
    for (ProjectVector const *const vector : *ProjectVectorHandler::Instance()) {
        if (at++ % step != first % step)
            continue;
        Try([&] {
            walk::ForModels(*vector, project, [&](ModelInfo const *info) {
                Try([&] {
                    std::string const text = std::string(vector->GetName()) + " " + walk::ArgumentsOf(*vector, info, 1);
                    auto const table = create.GetProjectData(text, vector->GetType());
                    Require(!table || table->Columns() == create.GetColumnIDs(text, vector->GetType()).Size());
                });
            });
        });
    }
}

} // namespace

// Changes of the file of a project, of single bytes or of what its records and blocks hold, and all of it asked that
// the second byte chooses. Each is there or an error.
int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
    static GoodFile file;
    FuzzInput const input(data, size);
    Try([&] {
        auto const project = engine::Project::OpenToRead(file.Damaged(input.bytes));
        for (engine::DataSetRecord const &record : project->DataSets())
            Try([&] { AskDataSet(*project, record.number); });
        Try([&] { project->GetSettingsSection("DefaultSelection")->CountSubSections("k"); });
        for (int index = 1; index <= project->GetNumberOfModels(); ++index)
            Try([&] {
                auto const model = project->GetModel(project->GetModelNumberAt(index));
                Require(!model || model->GetXColumnTerms().Size() >= 0);
                project->QualityOf(project->GetModelNumberAt(index));
            });
        AskStatistics(project, 64, input.choice);
    });
    return 0;
}
