// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QtTest>

#include "clineedit.h"

using namespace Dravo;

Q_DECLARE_METATYPE(QValidator::State)

class tst_LineEdit : public QObject
{
    Q_OBJECT
private slots:
    void validators_data()
    {
        QTest::addColumn<bool>("phone");  // false: the phone-or-e-mail validator
        QTest::addColumn<QString>("input");
        QTest::addColumn<int>("pos");
        QTest::addColumn<QValidator::State>("expected");
        const QValidator::State A = QValidator::Acceptable, I = QValidator::Invalid;
        const QString d15 = QStringLiteral("123456789012345");
        auto phone = [](const char* pTag) -> QTestData& {
            return QTest::addRow("phone: %s", pTag) << true;
        };
        auto mail = [](const char* pTag) -> QTestData& {
            return QTest::addRow("phone or e-mail: %s", pTag) << false;
        };
        phone("deleted back to start") << "12a" << 0 << A;
        phone("plus first") << "+4930" << 1 << A;
        phone("plus typed before another plus") << "++49" << 1 << I;
        phone("plus first with plus later") << "+49+" << 1 << I;
        phone("arabic-indic digit first") << QString(QChar(0x0663)) << 1 << A;
        phone("letter first") << "a" << 1 << I;
        phone("accented letter first") << QString(QChar(0x00E9)) << 1 << I;
        phone("devanagari digit later") << QString("12") + QChar(0x0967) << 3 << A;
        phone("plus later") << "12+" << 3 << I;
        phone("15th character") << d15 << 15 << A;
        phone("16th character") << d15 + "6" << 16 << I;
        phone("16 long, cursor inside") << d15 + "6" << 3 << I;
        phone("plus and 15 digits") << "+" + d15 << 16 << I;
        phone("letter in middle not re-examined") << "12a45" << 5 << A;
        phone("cursor past an empty text") << "" << 1 << I;
        mail("cursor past the end") << "a" << 2 << I;
        mail("cursor at 0") << "# #" << 0 << A;
        mail("accented letter") << QString("jos") + QChar(0x00E9) << 4 << A;
        mail("cyrillic letter") << QString(QChar(0x0436)) << 1 << A;
        mail("arabic-indic digit") << QString(QChar(0x0663)) << 1 << A;
        mail("space") << "a " << 2 << I;
        mail("underscore") << "a_" << 2 << I;
        mail("hash") << "#" << 1 << I;
        mail("no length limit") << QString(200, QLatin1Char('x')) << 200 << A;
        mail("space earlier not re-examined") << "a b" << 3 << A;
    }

    void validators()
    {
        QFETCH(bool, phone);
        QFETCH(QString, input);
        QFETCH(int, pos);
        QFETCH(QValidator::State, expected);
        const CLineEdit::PhoneValidator phoneValidator;
        const CLineEdit::PhoneEmailValidator mailValidator;
        const QValidator& validator =
            phone ? static_cast<const QValidator&>(phoneValidator) : mailValidator;
        QString text = input;
        int cursor = pos;
        QCOMPARE(validator.validate(text, cursor), expected);
        // Judging never edits.
        QCOMPARE(text, input);
        QCOMPARE(cursor, pos);
    }

    void typingIntoFields_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("expected");
        QTest::newRow("phone drops letters and later plus") << 0 << "+49x1+2" << QString("+4912");
        QTest::newRow("phone stops at 15")
            << 0 << "12345678901234567" << QString("123456789012345");
        // Each of "@", ".", ",", "+" and "-" is taken; space, "_" and "#" are not.
        QTest::newRow("phone or e-mail") << 2 << "a b_c#@d.e,+1-2" << QString("abc@d.e,+1-2");
        QTest::newRow("plain takes all") << 3 << "a b_c#" << QString("a b_c#");
        QTest::newRow("unknown type is plain") << 7 << "x #" << QString("x #");
    }

    void typingIntoFields()
    {
        QFETCH(int, type);
        QFETCH(QString, typed);
        QFETCH(QString, expected);
        CLineEdit edit(nullptr, CLineEdit::eLineEditType(type));
        QTest::keyClicks(&edit, typed);
        QCOMPARE(edit.text(), expected);
        // Deleting everything is always possible.
        for (int i = 0; i < expected.size(); ++i)
            QTest::keyClick(&edit, Qt::Key_Backspace);
        QCOMPARE(edit.text(), QString());
    }
};

QTEST_MAIN(tst_LineEdit)
#include "tst_lineedit.moc"
