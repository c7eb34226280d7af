#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLocale>
#include <QString>
#include <QTranslator>

// The texts and numbers of a language (as in "ar_EG"), for as long as this object lives.
class TestLanguage final {
public:
    explicit TestLanguage(const QString& name)
        : before_(QLocale()) {
        QLocale::setDefault(QLocale(name));
        EXPECT_TRUE(translator_.load(QStringLiteral(":/translations/korvel-today_") + name.left(2)));
        QCoreApplication::installTranslator(&translator_);
    }
    ~TestLanguage() {
        QCoreApplication::removeTranslator(&translator_);
        QLocale::setDefault(before_);
    }
    TestLanguage(const TestLanguage&) = delete;
    TestLanguage& operator=(const TestLanguage&) = delete;

private:
    QLocale before_;
    QTranslator translator_;
};
