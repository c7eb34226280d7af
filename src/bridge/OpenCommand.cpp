#include "bridge/Commands.h"
#include "bridge/Update.h"
#include "exchange/SharedSettings.h"
#include "model/HostUrls.h"
#include "platform/storage/SharedDefaults.h"
#include "platform/system/DetachedProcess.h"

#include <QFile>
#include <QString>

#include <algorithm>
#include <optional>

namespace bridge {

namespace {

// The request of a URL in either spelling of its scheme; desktops turn schemes into lower case. Empty where
// it is none.
std::string requestOf(const std::string& text) {
    const QString url = QString::fromStdString(text);
    const qsizetype end = url.indexOf(QLatin1String("://"));
    if (end < 0 || url.left(end).compare(QLatin1String(model::hostUrlScheme), Qt::CaseInsensitive) != 0)
        return {};
    const QString rest = url.mid(end + 3);
    // A desktop may put a slash behind what it takes for the name of a host.
    const QString request = rest.endsWith(QLatin1Char('/')) ? rest.chopped(1) : rest;
    for (const char* known :
         {model::allTransactionsRequest, model::newTransactionRequest, model::editTransactionRequest})
        if (request == QLatin1String(known))
            return known;
    return {};
}

// The plan that the panel asks to edit.
std::string requestedPlan() {
    const auto settings = exchange::openSharedSettings();
    return settings ? settings->stringForKey("edit_transaction_plan_pk").value_or("") : "";
}

// The name of a plan that is known.
std::string nameOf(const std::string& key, const std::vector<FilePlans>& files) {
    for (const FilePlans& file : files)
        for (const Plan& plan : file.plans)
            if (file.prefix + plan.key == key)
                return shownName(plan);
    return {};
}

// A text in the quotes of GVariant's notation.
std::string quoted(const std::string& text) {
    std::string result = "'";
    for (const char unit : lineOf(text)) {
        if (unit == '\'' || unit == '\\')
            result += '\\';
        result += unit;
    }
    return result + "'";
}

// Names the plan, as no program can be told from outside which one to show. Without a service for
// notifications nothing is shown.
void notify(const std::string& title, const std::string& name) {
    const auto gdbus = platform::findProgram("gdbus");
    if (!gdbus)
        return;
    (void)platform::startDetached(
        *gdbus, {"gdbus", "call", "--session", "--dest", "org.freedesktop.Notifications", "--object-path",
                 "/org/freedesktop/Notifications", "--method", "org.freedesktop.Notifications.Notify",
                 quoted("Korvel Today"), "0", quoted("korvel-today"), quoted(name), quoted(title), "@as []",
                 "@a{sv} {}", "10000"});
}

// Starts the program with its file.
bool start(const Program& program, const std::string& path) {
    if (!program.executable.empty()) {
        const std::string name(program.executable);
        const auto executable = platform::findProgram(name);
        return executable && platform::startDetached(*executable, {name, path});
    }
    for (const std::vector<std::string>& opener :
         {std::vector<std::string>{"gio", "open", path}, {"xdg-open", path}})
        if (const auto executable = platform::findProgram(opener[0]))
            return platform::startDetached(*executable, opener);
    return false;
}

} // namespace

int openUrl(Surroundings& surroundings) {
    const std::string& url = surroundings.operands[0];
    const std::string request = requestOf(url);
    if (request.empty())
        return failed(surroundings, url + " is none of the panel's requests");
    OpenedState state;
    if (!openState(surroundings, state))
        return Failed;
    const std::vector<ConnectedFile>& files = state.configuration().files;
    if (files.empty())
        return failed(surroundings, "no file is connected; see korvel-today-bridge sources");
    const std::string plan = request == model::editTransactionRequest ? requestedPlan() : "";
    const auto found = std::find_if(files.begin(), files.end(), [&](const ConnectedFile& file) {
        return plan.starts_with(keyPrefix(file));
    });
    const ConnectedFile& file = found == files.end() ? files.front() : *found;
    const Program* program = programOf(surroundings.programs, file.program);
    if (!program || !start(*program, file.path))
        return failed(surroundings, file.path + " cannot be opened: " +
                                        std::string(program ? program->title : file.program) +
                                        " cannot be started");
    if (const std::string name = nameOf(plan, keptPlans(state)); !name.empty())
        notify(std::string(program->title), name);
    return Done;
}

} // namespace bridge
