#include "bridge/Candidates.h"

#include "bridge/Folders.h"
#include "platform/storage/Files.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace bridge {

namespace {

// Files that the user has not asked for are looked at, so that there is an end to it.
constexpr int mostEntries = 10000;

// The local files of the desktop's list, the newest of which a program has added last.
std::vector<std::string> recentFiles() {
    std::vector<std::string> paths;
    const auto bytes = platform::readFile(platform::pathByAppending(dataFolder(), "recently-used.xbel"));
    if (!bytes)
        return paths;
    QXmlStreamReader reader(QByteArray::fromStdString(*bytes));
    while (!reader.atEnd() && paths.size() < mostEntries)
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("bookmark"))
            if (const QUrl url(reader.attributes().value(QLatin1String("href")).toString());
                url.isLocalFile())
                paths.push_back(QFile::encodeName(url.toLocalFile()).toStdString());
    return paths;
}

// A path, or the URL of a local file.
std::string pathOf(const QString& text) {
    return QFile::encodeName(text.startsWith(QLatin1String("file:")) ? QUrl(text).toLocalFile() : text)
        .toStdString();
}

// The lines "File1=PATH" of a file of settings; "$HOME" in a path is the user's home.
std::vector<std::string> recentFilesOf(const std::string& settings) {
    std::vector<std::string> paths;
    const auto bytes = platform::readFile(settings);
    if (!bytes)
        return paths;
    static const QRegularExpression line(QStringLiteral(R"(^File\d+(?:\[\$e\])?=(.+)$)"),
                                         QRegularExpression::MultilineOption);
    auto matches = line.globalMatch(QString::fromStdString(*bytes));
    while (matches.hasNext() && paths.size() < mostEntries) {
        QString path = matches.next().captured(1).trimmed();
        path.replace(QLatin1String("$HOME"), QString::fromStdString(homeFolder()));
        paths.push_back(pathOf(path));
    }
    return paths;
}

// GnuCash keeps its list in the desktop's settings, which are read by their own program. Where GnuCash is not
// installed, they know no such list.
std::vector<std::string> recentFilesOfGnuCash() {
    std::vector<std::string> paths;
    QProcess settings;
    settings.setStandardInputFile(QProcess::nullDevice());
    settings.start(QStringLiteral("gsettings"),
                   {QStringLiteral("list-recursively"), QStringLiteral("org.gnucash.GnuCash.history")});
    constexpr int longestWait = 2000; // milliseconds
    if (!settings.waitForFinished(longestWait)) {
        settings.kill();
        settings.waitForFinished();
        return paths;
    }
    static const QRegularExpression line(QStringLiteral(R"(^\S+ file\d+ (['"])(.+)\1$)"),
                                         QRegularExpression::MultilineOption);
    auto matches = line.globalMatch(QString::fromUtf8(settings.readAllStandardOutput()));
    while (matches.hasNext() && paths.size() < mostEntries)
        paths.push_back(pathOf(matches.next().captured(2)));
    return paths;
}

std::vector<std::string> entriesOf(const std::string& folder) {
    std::vector<std::string> paths;
    QDirIterator entries(QFile::decodeName(folder.c_str()), QDir::Files);
    while (entries.hasNext() && paths.size() < mostEntries)
        paths.push_back(QFile::encodeName(entries.next()).toStdString());
    std::sort(paths.begin(), paths.end());
    return paths;
}

// A copy of before a save: NAME.20261121093000.gnucash.
bool isCopy(const std::string& path) {
    static const QRegularExpression stamp(QStringLiteral(R"(\.\d{14}\.\w+$)"));
    return stamp.match(QString::fromStdString(path)).hasMatch();
}

void add(Programs programs, const std::string& path, std::vector<Candidate>& result) {
    const auto hasEnding = [&](const Program& program) { return hasEndingOf(program, path); };
    if (isCopy(path) || std::none_of(programs.begin(), programs.end(), hasEnding))
        return;
    const std::string canonical = canonicalPath(path);
    const auto isIt = [&](const Candidate& other) { return other.path == canonical; };
    if (std::any_of(result.begin(), result.end(), isIt))
        return;
    if (const Program* program = programOfFile(programs, canonical))
        result.push_back({canonical, program});
}

} // namespace

std::string canonicalPath(const std::string& path) {
    const QString canonical = QFileInfo(QFile::decodeName(path.c_str())).canonicalFilePath();
    return canonical.isEmpty() ? path : QFile::encodeName(canonical).toStdString();
}

std::vector<Candidate> candidates(Programs programs) {
    std::vector<std::string> paths = recentFiles();
    const auto append = [&](const std::vector<std::string>& more) {
        paths.insert(paths.end(), more.begin(), more.end());
    };
    append(recentFilesOf(platform::pathByAppending(configFolder(), "kmymoneyrc")));
    append(recentFilesOf(platform::pathByAppending(configFolder(), "kmymoney/kmymoneyrc")));
    append(recentFilesOfGnuCash());
    append(entriesOf(homeFolder()));
    append(entriesOf(QFile::encodeName(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
                         .toStdString()));
    if (const char* journal = std::getenv("LEDGER_FILE"); journal && *journal)
        paths.emplace_back(journal);
    else
        paths.push_back(platform::pathByAppending(homeFolder(), ".hledger.journal"));
    std::vector<Candidate> result;
    for (const std::string& path : paths)
        add(programs, path, result);
    return result;
}

} // namespace bridge
