#include "app/Report.h"

#include "app/Gnuplot.h"
#include "app/SavedPlot.h"
#include "app/Summary.h"

#include <algorithm>
#include <optional>
#include <sstream>

namespace {

// More rows of a table are not for reading.
constexpr int mostRows = 500;
constexpr int shownDigits = 4;

constexpr char const *pageStyle = R"(
:root { color-scheme: light dark; --ink: #1d2733; --quiet: #5d6b7a; --line: #d9dfe6; --page: #fff; --raised: #f5f7fa;
    --accent: #1f5fa8; --warn: #8a4b08; }
@media (prefers-color-scheme: dark) {
    :root { --ink: #e3e8ee; --quiet: #9aa7b5; --line: #36414d; --page: #14191f; --raised: #1d242c; --accent: #7db4f0;
        --warn: #f0b46a; }
}
* { box-sizing: border-box; }
body { margin: 0 auto; padding: 2.5rem 1.25rem 4rem; max-width: 62rem; background: var(--page); color: var(--ink);
    font: 16px/1.55 system-ui, -apple-system, "Segoe UI", Roboto, "Liberation Sans", sans-serif; }
h1 { margin: 0 0 .25rem; font-size: 2.1rem; line-height: 1.2; overflow-wrap: anywhere; }
h2 { margin: 3rem 0 .75rem; padding-bottom: .3rem; border-bottom: 2px solid var(--line); font-size: 1.4rem; }
h3 { margin: 2rem 0 .5rem; font-size: 1.1rem; overflow-wrap: anywhere; }
h3 small { color: var(--quiet); font-weight: normal; }
a { color: var(--accent); }
p { margin: .5rem 0; }
.quiet { color: var(--quiet); }
.lost { color: var(--warn); }
.lost::before { content: "\26A0\FE0E  "; }
nav ul { margin: .5rem 0; padding: 0; list-style: none; columns: 18rem; }
nav li { overflow-wrap: anywhere; }
.table { overflow-x: auto; }
table { border-collapse: collapse; font-size: .875rem; font-variant-numeric: tabular-nums; }
th, td { padding: .3rem .8rem; border-bottom: 1px solid var(--line); text-align: left; white-space: nowrap; }
th { background: var(--raised); font-weight: 600; }
.number { text-align: right; }
figure { margin: .75rem 0; }
figure svg { display: block; max-width: 100%; height: auto; border: 1px solid var(--line); border-radius: 6px;
    background: #fff; }
details { margin: .5rem 0; }
summary { color: var(--accent); cursor: pointer; }
details .table { margin-top: .5rem; max-height: 30rem; overflow: auto; }
details th { position: sticky; top: 0; }
@media print {
    :root { color-scheme: light; --ink: #000; --quiet: #444; --line: #bbb; --page: #fff; --raised: #fff;
        --accent: #000; --warn: #000; }
    body { padding: 0; max-width: none; font-size: 10.5pt; }
    nav, details:not([open]) { display: none; }
    details .table { max-height: none; overflow: visible; }
    figure, tr, .lost { break-inside: avoid; }
    h2, h3 { break-after: avoid; }
}
)";

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (char const letter : text)
        switch (letter) {
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '&':
            escaped += "&amp;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += letter;
        }
    return escaped;
}

void ReplaceAll(std::string &text, std::string const &what, std::string const &by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
}

// The picture as a part of a page with others: what its tags call by name gets a name that no other picture has. Texts
// between the tags stay as they are, but for the titles that gnuplot gives to what has none.
std::string Inlined(std::string const &svg, std::string const &prefix, std::string const &title) {
    std::size_t at = std::min(svg.find("<g id="), svg.size());
    std::string const head = svg.substr(std::min(svg.find("<svg"), at), at);
    std::string picture = head.substr(0, head.find('>')) + " role=\"img\" aria-label=\"" + Escaped(title) + "\">\n";
    while (at < svg.size()) {
        std::size_t const tag = std::min(svg.find('<', at), svg.size());
        bool const isUntitled = picture.ends_with("<title") && svg.compare(at, 14, ">gnuplot_plot_") == 0;
        picture.append(svg, at, isUntitled ? 1 : tag - at);
        at = std::min(svg.find('>', tag), svg.size());
        std::string text = svg.substr(tag, at - tag);
        for (std::string const reference : {" id='", " id=\"", "href='#", "href=\"#", "url(#"})
            ReplaceAll(text, reference, reference + prefix);
        picture += text;
    }
    return picture;
}

class Page {
public:
    Page(Output &output, boost::shared_ptr<engine::Project> const &project) : m_output(output), m_project(project) {}

    void Begin(std::string const &name) {
        std::string const title = Escaped(name);
        m_output << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                 << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" << title
                 << "</title>\n<style>" << pageStyle << "</style>\n</head>\n<body>\n<h1>" << title << "</h1>\n";
    }

    void End() { m_output << "</body>\n</html>\n"; }

    void Contents(std::vector<std::string> const &plots) {
        if (plots.size() < 2)
            return;
        m_output << "<nav aria-label=\"Plots\"><ul>\n";
        for (std::size_t i = 0; i < plots.size(); ++i)
            m_output << "<li><a href=\"#" << IdOf(i) << "\">" << Escaped(plots[i]) << "</a></li>\n";
        m_output << "</ul></nav>\n";
    }

    void DataSets() {
        m_output << "<h2>Data sets</h2>\n";
        Table(DataSetsOf(*m_project));
    }

    void Models() {
        m_output << "<h2>Models</h2>\n";
        if (m_project->GetNumberOfModels() == 0)
            return Paragraph("quiet", "There are none yet.");
        Table(ModelsOf(*m_project));
        for (int i = 1; i <= m_project->GetNumberOfModels(); ++i)
            Model(m_project->GetModelNumberAt(i));
    }

    void Plot(std::size_t position, std::string const &name) {
        SavedPlot plot;
        std::optional<BuiltPlot> built;
        std::string script, title;
        try {
            plot = ReadPlot(m_project, m_project->Plot(name));
            built.emplace(m_project, *plot.selection, true);
            std::swap(title, plot.settings.style.title);
            script = plot.Script(*built);
        } catch (NCError const &error) {
            Heading(position, Escaped(name));
            return Paragraph("lost", error.what());
        }
        Heading(position, title.empty() ? Escaped(name) : Escaped(title) + " <small>" + Escaped(name) + "</small>");
        Picture(script, IdOf(position) + "-", title.empty() ? name : title);
        for (std::string const &loss : plot.losses)
            Paragraph("lost", loss);
        Table(*built);
    }

private:
    static std::string IdOf(std::size_t position) { return "plot-" + std::to_string(position + 1); }

    void Heading(std::size_t position, std::string const &html) {
        m_output << "<h3 id=\"" << IdOf(position) << "\">" << html << "</h3>\n";
    }

    void Paragraph(char const *kind, std::string const &text) {
        m_output << "<p class=\"" << kind << "\">" << Escaped(text) << "</p>\n";
    }

    // One that gnuplot can't draw does not spoil the page.
    void Picture(std::string const &script, std::string const &prefix, std::string const &title) {
        try {
            m_output << "<figure>" + Inlined(PictureText(script), prefix, title) + "</figure>\n";
        } catch (NCError const &error) {
            Paragraph("lost", error.what());
        }
    }

    void Cell(char const *tag, bool isNumber, std::string_view text) {
        m_output << "<" << tag << (isNumber ? " class=\"number\">" : ">") << Escaped(text) << "</" << tag << ">";
    }

    void Model(int number) {
        boost::shared_ptr<ModelInfo const> const info = m_project->GetModelInfo(number);
        m_output << "<h3>Model " << std::to_string(number) << ": " << Escaped(ModelTypeE::GetModelTypeName(info->type))
                 << "</h3>\n";
        if (info->SizeComponents() == 0)
            return Paragraph("quiet", "It has no components.");
        Table(SummaryOf(*m_project, number, true));
        std::istringstream notes(NotesOn(*m_project, number));
        for (std::string note; std::getline(notes, note);)
            Paragraph("quiet", note);
    }

    void Table(Listing const &listing) {
        m_output << "<div class=\"table\"><table>\n<thead><tr>";
        for (std::size_t column = 0; column < listing.Headings().size(); ++column) {
            std::string heading = listing.Headings()[column];
            std::ranges::replace(heading, '_', ' ');
            Cell("th", !listing.Rows().empty() && listing.Rows().front()[column].isNumber, heading);
        }
        m_output << "</tr></thead>\n<tbody>\n";
        for (std::vector<Listing::Cell> const &row : listing.Rows()) {
            m_output << "<tr>";
            for (Listing::Cell const &cell : row)
                Cell("td", cell.isNumber, cell.text);
            m_output << "</tr>\n";
        }
        m_output << "</tbody>\n</table></div>\n";
    }

    void Table(BuiltPlot const &plot) {
        ProjectData const &table = plot.Table();
        std::string const rows = std::to_string(table.Columns());
        m_output << "<details><summary>Table of " << rows << " rows</summary>\n";
        if (table.Columns() > mostRows)
            Paragraph("quiet", "The first " + std::to_string(mostRows) + " of " + rows + " rows.");
        m_output << "<div class=\"table\"><table>\n<thead><tr>";
        Cell("th", false, table.GetColumnIDs().GetRowTitle(1));
        for (int series = 1; series <= table.Rows(); ++series)
            Cell("th", true, plot.Dates().Name(table, static_cast<std::size_t>(series - 1)));
        m_output << "</tr></thead>\n<tbody>\n";
        for (int item = 1; item <= std::min(table.Columns(), mostRows); ++item) {
            m_output << "<tr>";
            Cell("th", false, table.GetColumnName(item));
            for (int series = 1; series <= table.Rows(); ++series)
                Cell("td", true, Figure(plot, series, item));
            m_output << "</tr>\n";
        }
        m_output << "</tbody>\n</table></div></details>\n";
    }

    static std::string Figure(BuiltPlot const &plot, int series, int item) {
        std::string const date =
            plot.Dates().Text(static_cast<std::size_t>(series - 1), static_cast<std::size_t>(item - 1));
        char buffer[32];
        return date.empty() ? std::string(NumberText(plot.Table().GetMatrix()(series, item), shownDigits, buffer))
                            : date;
    }

    Output &m_output;
    boost::shared_ptr<engine::Project> m_project;
};

} // namespace

void WriteReport(Output &output, boost::shared_ptr<engine::Project> const &project, std::string const &name,
                 engine::Progress const &progress) {
    std::vector<std::string> const plots = project->PlotNames();
    Page page(output, project);
    page.Begin(name);
    page.Contents(plots);
    page.DataSets();
    page.Models();
    output << "<h2>Plots</h2>\n";
    if (plots.empty())
        output << "<p class=\"quiet\">There are none yet.</p>\n";
    for (std::size_t i = 0; i < plots.size(); ++i) {
        progress.Report(static_cast<double>(i) / static_cast<double>(plots.size()));
        page.Plot(i, plots[i]);
    }
    page.End();
}
