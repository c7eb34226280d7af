#include "resources/Language.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLocale>
#include <QTranslator>

namespace resources {

namespace {

void install(const QLocale& locale) {
    auto* translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(locale, QStringLiteral("korvel-today"), QStringLiteral("_"),
                         QStringLiteral(":/translations")))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace

void installLanguage() {
    const QStringList languages = QLocale::system().uiLanguages();
    const QLocale messages = languages.isEmpty() ? QLocale::c() : QLocale(languages.front());
    install(QLocale(QLocale::English));
    if (messages.language() != QLocale::English)
        install(messages);
    QGuiApplication::setLayoutDirection(messages.textDirection());
}

} // namespace resources
