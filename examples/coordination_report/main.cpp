// Reports the coordination of metal centres in XYZ files. See --help.

#include "examples/coordination_report/CentrePicture.h"
#include "examples/coordination_report/Centres.h"
#include "examples/coordination_report/CommandLine.h"
#include "examples/coordination_report/HtmlReport.h"
#include "examples/coordination_report/Ranking.h"
#include "examples/coordination_report/Structure.h"
#include "examples/coordination_report/TextReport.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <string>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace CoordinationReport;

/// What went wrong, told at once on the standard error and kept for the page.
class Failures
{
public:
    void Add(std::string const& message)
    {
        std::cerr << "coordination_report: " << message << std::endl;
        m_messages.push_back(message);
    }

    std::vector<std::string> const& Messages() const { return m_messages; }

private:
    std::vector<std::string> m_messages;
};

/// The files that the arguments stand for, folders replaced by what is in them, by name.
std::vector<std::string> FilesOf(std::vector<std::string> const& arguments, Failures& failures)
{
    std::vector<std::string> files;
    for (std::string const& argument : arguments) {
        std::error_code failure;
        if (!fs::is_directory(argument, failure)) {
            files.push_back(argument);
            continue;
        }
        std::vector<std::string> inFolder;
        for (fs::directory_iterator entry(argument, failure), end; !failure && entry != end;
             entry.increment(failure)) {
            if (entry->path().extension() == ".xyz") {
                inFolder.push_back(entry->path().string());
            }
        }
        if (failure) {
            failures.Add(argument + ": " + failure.message());
        } else if (inFolder.empty()) {
            failures.Add(argument + ": no .xyz file is in this folder");
        }
        std::sort(inFolder.begin(), inFolder.end());
        files.insert(files.end(), inFolder.begin(), inFolder.end());
    }
    return files;
}

FileReport Report(std::string const& path, Options const& options)
{
    FileReport report;
    report.structure = ReadXyz(path);
    CentreChoice const choice = FindCentres(report.structure, options);
    report.remarks = choice.remarks;
    for (Centre const& centre : choice.centres) {
        report.centres.push_back({centre, RankGeometries(report.structure, centre)});
    }
    return report;
}

void WriteFile(fs::path const& path, std::string const& text, Failures& failures)
{
    std::ofstream stream(path, std::ios::binary);
    stream << text;
    stream.close();
    if (!stream) {
        failures.Add(path.string() + ": cannot be written");
    }
}

void WritePictures(std::vector<FileReport> const& reports, fs::path const& folder, Failures& failures)
{
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (!fs::is_directory(folder, failure)) {
        failures.Add(folder.string() + ": cannot be made a folder");
        return;
    }
    std::set<std::string> taken;
    for (FileReport const& report : reports) {
        for (RankedCentre const& ranked : report.centres) {
            // Files of one name from several folders get a number.
            std::string const stem = fs::path(report.structure.path).stem().string() + "-" +
                                     report.structure.NameOf(ranked.centre.atom);
            std::string name = stem;
            for (int number = 2; !taken.insert(name).second; ++number) {
                name = stem + "-" + std::to_string(number);
            }
            WriteFile(folder / (name + ".svg"),
                      DrawCentre(report.structure, ranked.centre, ranked.ranking, "centre", true), failures);
        }
    }
}

int Run(Options const& options)
{
    Failures failures;
    std::vector<FileReport> reports;
    bool const keep = options.svgFolder || options.htmlFile;
    if (options.tsv) {
        std::cout << TsvHeader();
    }
    for (std::string const& path : FilesOf(options.files, failures)) {
        try {
            FileReport report = Report(path, options);
            std::cout << (options.tsv ? TsvReport(report) : TextReport(report));
            if (keep) {
                reports.push_back(std::move(report));
            }
        } catch (BadFile const& bad) {
            std::cout.flush();
            failures.Add(bad.what());
        }
    }
    if (options.svgFolder) {
        WritePictures(reports, *options.svgFolder, failures);
    }
    if (options.htmlFile) {
        WriteFile(*options.htmlFile, HtmlPage(reports, failures.Messages()), failures);
    }
    if (!std::cout.flush()) {
        failures.Add("the standard output cannot be written");
    }
    return failures.Messages().empty() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        Options const options = ReadCommandLine({argv + 1, argv + argc});
        if (options.help) {
            std::cout << HelpText();
            return std::cout.flush() ? 0 : 1;
        }
        return Run(options);
    } catch (BadUsage const& usage) {
        std::cerr << "coordination_report: " << usage.what() << "\nTry coordination_report --help.\n";
        return 2;
    } catch (std::exception const& failure) {
        std::cerr << "coordination_report: " << failure.what() << "\n";
        return 1;
    }
}
