// Files the host tests read: the problem files under data/ and the JSON
// blocks of docs/problem-format.md.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <gtest/gtest.h>

namespace kelmarhost {

inline QString dataFile(const char* name) {
    return QStringLiteral(KELMAR_TEST_DATA_DIR "/") + QString::fromLatin1(name);
}

// The first ```json block after `heading` in docs/problem-format.md; empty
// (and a failure) if the document has none there.
inline QByteArray documentedJson(const char* heading) {
    QFile doc(QStringLiteral(KELMAR_DOCS_DIR "/problem-format.md"));
    EXPECT_TRUE(doc.open(QIODevice::ReadOnly));
    const QByteArray text = doc.readAll();
    const qsizetype section = text.indexOf(heading);
    const qsizetype begin = section < 0 ? -1 : text.indexOf("```json\n", section);
    const qsizetype end = begin < 0 ? -1 : text.indexOf("```", begin + 8);
    EXPECT_TRUE(end > begin && begin >= 0) << "no JSON block after " << heading;
    return end > begin && begin >= 0 ? text.mid(begin + 8, end - begin - 8) : QByteArray();
}

}  // namespace kelmarhost
