#include "bridge/icons/FoldedText.h"

namespace bridge {

namespace {

constexpr QChar sharpS(0x00DF);          // "ss" without case
constexpr QChar tatweel(0x0640);         // stretches a line and is no letter
constexpr QChar voicedSoundMark(0x3099); // tells Japanese syllables apart, and so is no accent
constexpr QChar semivoicedSoundMark(0x309A);
constexpr QChar longVowelMark(0x30FC);
constexpr QChar article[] = {QChar(0x0627), QChar(0x0644)}; // the Arabic al-

// What Arabic and Persian write in more than one way.
QChar plainLetter(QChar letter) {
    switch (letter.unicode()) {
    case 0x0629: // Teh Marbuta
    case 0x06D5: // Ae
        return QChar(0x0647);
    case 0x0649: // Alef Maksura
    case 0x06CC: // Farsi Yeh
        return QChar(0x064A);
    case 0x06A9: // Keheh
        return QChar(0x0643);
    default:
        return letter;
    }
}

bool isAccent(QChar character) {
    if (character == voicedSoundMark || character == semivoicedSoundMark)
        return false;
    return character.isMark() || character == tatweel;
}

// A surrogate is half of a letter beyond the first plane.
bool isInWord(QChar character) {
    return character.isLetterOrNumber() || character.isSurrogate() || character == voicedSoundMark ||
           character == semivoicedSoundMark || character == longVowelMark;
}

// The article is left where less than three letters follow, which may be a word of their own.
void dropArticle(QString& text, qsizetype wordBegin) {
    const QStringView word = QStringView(text).sliced(wordBegin);
    if (word.size() >= 5 && word.startsWith(QStringView(article, 2)))
        text.remove(wordBegin, 2);
}

} // namespace

QString foldedText(std::string_view text) {
    const QString whole = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))
                              .normalized(QString::NormalizationForm_KD)
                              .toCaseFolded();
    const QChar space(QLatin1Char(' '));
    QString folded(space);
    qsizetype wordBegin = 1;
    for (const QChar character : whole) {
        if (isAccent(character))
            continue;
        if (character == sharpS) {
            folded += QLatin1String("ss");
        } else if (isInWord(character)) {
            folded += plainLetter(character);
        } else if (!folded.endsWith(space)) {
            dropArticle(folded, wordBegin);
            folded += space;
            wordBegin = folded.size();
        }
    }
    if (!folded.endsWith(space)) {
        dropArticle(folded, wordBegin);
        folded += space;
    }
    return folded.normalized(QString::NormalizationForm_C);
}

} // namespace bridge
