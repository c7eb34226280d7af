#include "center/CompanionProgram.h"

#include "platform/system/DetachedProcess.h"

#include <QCoreApplication>
#include <QFile>

namespace center {

QString companionProgram(const char* name) {
    const QString beside = QCoreApplication::applicationDirPath() + u'/' + QLatin1String(name);
    if (QFile::exists(beside))
        return beside;
    return QString::fromStdString(platform::findProgram(name).value_or(name));
}

} // namespace center
