// Reports the coordination of metal centres in XYZ files. See --help.

#include "examples/coordination_report/CentrePicture.h"
#include "examples/coordination_report/Centres.h"
#include "examples/coordination_report/CommandLine.h"
#include "examples/coordination_report/HtmlReport.h"
#include "examples/coordination_report/Ranking.h"
#include "examples/coordination_report/Structure.h"
#include "examples/coordination_report/TextReport.h"
#include "examples/shared/SceneArchive.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace CoordinationReport;
using namespace Examples;

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
        report.centres.push_back({centre, RankGeometries(report.structure, centre), {}});
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

/// What of the scenes an archive gives back: of the file, if one is asked for and takes them, else of one in
/// memory.
std::vector<SceneObjects> ThroughArchive(std::vector<SceneObjects> scenes,
                                         std::optional<std::string> const& path, Failures& failures)
{
    std::vector<SceneShape> shapes;
    for (SceneObjects const& scene : scenes) {
        shapes.push_back(scene.Shape());
    }
    if (path) {
        try {
            CFile stored(path->c_str(), CFile::modeWrite | CFile::modeCreate);
            StoreScenes(stored, scenes);
            stored.Close();
            CFile file(path->c_str(), CFile::modeRead);
            std::vector<SceneObjects> loaded = LoadScenes(file, shapes);
            WriteFile(*path + ".list", KindsOf(shapes) + "\n", failures);
            return loaded;
        } catch (std::runtime_error const& failure) {
            failures.Add(*path + ": the scenes are not stored: " + failure.what());
        }
    }
    CMemFile memory;
    StoreScenes(memory, scenes);
    memory.SeekToBegin();
    return LoadScenes(memory, shapes);
}

/// Gives all centres their scenes, as they were loaded.
void AddScenes(std::vector<FileReport>& reports, std::optional<std::string> const& path, Failures& failures)
{
    std::vector<SceneObjects> scenes;
    for (FileReport const& report : reports) {
        for (RankedCentre const& ranked : report.centres) {
            scenes.push_back(SceneOf(report.structure, ranked.centre, ranked.ranking));
        }
    }
    std::vector<SceneObjects> const loaded = ThroughArchive(std::move(scenes), path, failures);
    auto next = loaded.begin();
    for (FileReport& report : reports) {
        for (RankedCentre& ranked : report.centres) {
            ranked.scene = *next++;
        }
    }
}

/// The chains that can be drawn.
std::vector<Structure> ReadChains(std::vector<std::string> const& paths, Failures& failures)
{
    std::vector<Structure> chains;
    for (std::string const& path : paths) {
        try {
            chains.push_back(ReadXyz(path));
            if (DrawChain(chains.back(), "ribbon", true).empty()) {
                chains.pop_back();
                failures.Add(path + ": no two neighbours are near enough for a ribbon");
            }
        } catch (BadFile const& bad) {
            failures.Add(bad.what());
        }
    }
    return chains;
}

/// Writes drawings into a folder. Files of one name get a number.
class PictureFolder
{
public:
    PictureFolder(fs::path folder, Failures& failures) : m_folder(std::move(folder)), m_failures(failures) {}

    void Write(std::string const& stem, std::string const& picture)
    {
        std::string name = stem;
        for (int number = 2; !m_taken.insert(name).second; ++number) {
            name = stem + "-" + std::to_string(number);
        }
        WriteFile(m_folder / (name + ".svg"), picture, m_failures);
    }

private:
    fs::path m_folder;
    Failures& m_failures;
    std::set<std::string> m_taken;
};

void WritePictures(std::vector<FileReport> const& reports, std::vector<Structure> const& chains,
                   fs::path const& folder, Failures& failures)
{
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (!fs::is_directory(folder, failure)) {
        failures.Add(folder.string() + ": cannot be made a folder");
        return;
    }
    PictureFolder pictures(folder, failures);
    for (FileReport const& report : reports) {
        for (RankedCentre const& ranked : report.centres) {
            pictures.Write(fs::path(report.structure.path).stem().string() + "-" +
                               report.structure.NameOf(ranked.centre.atom),
                           DrawCentre(report.structure, ranked, "centre", true));
        }
    }
    for (Structure const& chain : chains) {
        pictures.Write(fs::path(chain.path).stem().string() + "-ribbon", DrawChain(chain, "ribbon", true));
    }
}

int Run(Options const& options)
{
    Failures failures;
    std::vector<FileReport> reports;
    bool const keep = options.svgFolder || options.htmlFile || options.sceneFile;
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
    if (keep) {
        AddScenes(reports, options.sceneFile, failures);
    }
    std::vector<Structure> const chains = ReadChains(options.chains, failures);
    if (options.svgFolder) {
        WritePictures(reports, chains, *options.svgFolder, failures);
    }
    if (options.htmlFile) {
        WriteFile(*options.htmlFile, HtmlPage(reports, chains, failures.Messages()), failures);
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
