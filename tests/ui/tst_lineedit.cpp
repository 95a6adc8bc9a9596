#include <QtTest>

#include "clineedit.h"
#include "ctextedit.h"

using namespace Dravo;

Q_DECLARE_METATYPE(QValidator::State)

class tst_LineEdit : public QObject
{
    Q_OBJECT
private slots:
    void phoneValidator_data();
    void phoneValidator();
    void phoneEmailValidator_data();
    void phoneEmailValidator();
    void typingIntoFields_data();
    void typingIntoFields();
    void textSetByCodeIsKept();
    void navigateOnlyKeys_data();
    void navigateOnlyKeys();
    void focusSignals();
};

namespace {
const QValidator::State A = QValidator::Acceptable;
const QValidator::State I = QValidator::Invalid;

void check(const QValidator& validator)
{
    QFETCH(QString, input);
    QFETCH(int, pos);
    QFETCH(QValidator::State, expected);
    QString text = input;
    int cursor = pos;
    QCOMPARE(validator.validate(text, cursor), expected);
    // Judging never edits.
    QCOMPARE(text, input);
    QCOMPARE(cursor, pos);
}

void addColumns()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<int>("pos");
    QTest::addColumn<QValidator::State>("expected");
}
}  // namespace

void tst_LineEdit::phoneValidator_data()
{
    addColumns();
    const QString digits15 = QStringLiteral("123456789012345");
    QTest::newRow("empty") << "" << 0 << A;
    QTest::newRow("deleted back to start") << "12a" << 0 << A;
    QTest::newRow("cursor at 0 beats length") << QString(20, QLatin1Char('1')) << 0 << A;
    QTest::newRow("plus first") << "+" << 1 << A;
    QTest::newRow("plus first before digits") << "+4930" << 1 << A;
    QTest::newRow("plus typed before another plus") << "++49" << 1 << I;
    QTest::newRow("plus first with plus later") << "+49+" << 1 << I;
    QTest::newRow("digit first") << "7" << 1 << A;
    QTest::newRow("arabic-indic digit first") << QString(QChar(0x0663)) << 1 << A;
    QTest::newRow("letter first") << "a" << 1 << I;
    QTest::newRow("accented letter first") << QString(QChar(0x00E9)) << 1 << I;
    QTest::newRow("space first") << " " << 1 << I;
    QTest::newRow("digit later") << "+49" << 3 << A;
    QTest::newRow("devanagari digit later") << QString("12") + QChar(0x0967) << 3 << A;
    QTest::newRow("fullwidth digit later") << QString("1") + QChar(0xFF12) << 2 << A;
    QTest::newRow("plus later") << "12+" << 3 << I;
    QTest::newRow("plus second") << "1+" << 2 << I;
    QTest::newRow("letter later") << "12x" << 3 << I;
    QTest::newRow("15th character") << digits15 << 15 << A;
    QTest::newRow("16th character") << digits15 + "6" << 16 << I;
    QTest::newRow("16 long, cursor inside") << digits15 + "6" << 3 << I;
    QTest::newRow("plus and 14 digits") << "+" + digits15.left(14) << 15 << A;
    QTest::newRow("plus and 15 digits") << "+" + digits15 << 16 << I;
    QTest::newRow("letter in middle not re-examined") << "12a45" << 5 << A;
    QTest::newRow("letter just typed in middle") << "12a45" << 3 << I;
    QTest::newRow("pasted text ending in digit") << "call 0800 123" << 13 << A;
}

void tst_LineEdit::phoneValidator()
{
    check(CLineEdit::PhoneValidator());
}

void tst_LineEdit::phoneEmailValidator_data()
{
    addColumns();
    QTest::newRow("empty") << "" << 0 << A;
    QTest::newRow("cursor at 0") << "# #" << 0 << A;
    QTest::newRow("latin letter") << "a" << 1 << A;
    QTest::newRow("capital") << "Z" << 1 << A;
    QTest::newRow("accented letter") << QString("jos") + QChar(0x00E9) << 4 << A;
    QTest::newRow("cyrillic letter") << QString(QChar(0x0436)) << 1 << A;
    QTest::newRow("cjk letter") << QString(QChar(0x4E2D)) << 1 << A;
    QTest::newRow("digit") << "5" << 1 << A;
    QTest::newRow("arabic-indic digit") << QString(QChar(0x0663)) << 1 << A;
    QTest::newRow("at") << "me@" << 3 << A;
    QTest::newRow("dot") << "me@x." << 5 << A;
    QTest::newRow("dash") << "-" << 1 << A;
    QTest::newRow("comma") << "a," << 2 << A;
    QTest::newRow("plus") << "+" << 1 << A;
    QTest::newRow("plus later") << "49+" << 3 << A;
    QTest::newRow("space") << "a " << 2 << I;
    QTest::newRow("underscore") << "a_" << 2 << I;
    QTest::newRow("hash") << "#" << 1 << I;
    QTest::newRow("slash") << "a/" << 2 << I;
    QTest::newRow("no length limit") << QString(200, QLatin1Char('x')) << 200 << A;
    QTest::newRow("space earlier not re-examined") << "a b" << 3 << A;
    QTest::newRow("space just typed in middle") << "a b" << 2 << I;
}

void tst_LineEdit::phoneEmailValidator()
{
    check(CLineEdit::PhoneEmailValidator());
}

void tst_LineEdit::typingIntoFields_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");
    QTest::newRow("phone drops letters and later plus") << 0 << "+49x1+2"
                                                        << "+4912";
    QTest::newRow("phone stops at 15") << 0 << "12345678901234567"
                                       << "123456789012345";
    QTest::newRow("phone refuses letter first") << 0 << "a1"
                                                << "1";
    QTest::newRow("phone or e-mail") << 2 << "a b_c#@d.e,+1-2"
                                     << "abc@d.e,+1-2";
    QTest::newRow("plain takes all") << 3 << "a b_c#"
                                     << "a b_c#";
    QTest::newRow("unknown type is plain") << 7 << "x #"
                                           << "x #";
}

void tst_LineEdit::typingIntoFields()
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

void tst_LineEdit::textSetByCodeIsKept()
{
    CLineEdit phone(QStringLiteral("12ab5"), nullptr, CLineEdit::eLineEditPhone);
    QCOMPARE(phone.text(), QStringLiteral("12ab5"));
    phone.setText(QStringLiteral("+1 555 0100"));
    QCOMPARE(phone.text(), QStringLiteral("+1 555 0100"));
}

void tst_LineEdit::navigateOnlyKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("cursorAfter");  // -1: dropped, cursor stays at 2
    QTest::newRow("left") << int(Qt::Key_Left) << 1;
    QTest::newRow("right") << int(Qt::Key_Right) << 3;
    QTest::newRow("home") << int(Qt::Key_Home) << 0;
    QTest::newRow("end") << int(Qt::Key_End) << 5;
    QTest::newRow("backspace") << int(Qt::Key_Backspace) << -1;
    QTest::newRow("delete") << int(Qt::Key_Delete) << -1;
    QTest::newRow("return") << int(Qt::Key_Return) << -1;
    QTest::newRow("letter") << int(Qt::Key_X) << -1;
    QTest::newRow("digit") << int(Qt::Key_5) << -1;
    QTest::newRow("space") << int(Qt::Key_Space) << -1;
}

void tst_LineEdit::navigateOnlyKeys()
{
    QFETCH(int, key);
    QFETCH(int, cursorAfter);
    CLineEdit edit(QStringLiteral("hello"), nullptr, CLineEdit::eLineEditNavigateOnly);
    edit.setCursorPosition(2);
    QSignalSpy returnSpy(&edit, &QLineEdit::returnPressed);
    QTest::keyClick(&edit, Qt::Key(key));
    QCOMPARE(edit.text(), QStringLiteral("hello"));
    QCOMPARE(edit.cursorPosition(), cursorAfter < 0 ? 2 : cursorAfter);
    QCOMPARE(returnSpy.count(), 0);
}

void tst_LineEdit::focusSignals()
{
    CLineEdit edit(nullptr, CLineEdit::eLineEditPlain);
    CTextEdit text(QStringLiteral("note"));
    QCOMPARE(text.toPlainText(), QStringLiteral("note"));
    QSignalSpy editIn(&edit, &CLineEdit::signalFocusGotten);
    QSignalSpy editOut(&edit, &CLineEdit::signalFocusLost);
    QSignalSpy textIn(&text, &CTextEdit::signalFocusGotten);
    QSignalSpy textOut(&text, &CTextEdit::signalFocusLost);

    QFocusEvent in(QEvent::FocusIn, Qt::MouseFocusReason);
    QFocusEvent out(QEvent::FocusOut, Qt::MouseFocusReason);
    QApplication::sendEvent(&edit, &in);
    QApplication::sendEvent(&text, &in);
    QCOMPARE(editIn.count(), 1);
    QCOMPARE(textIn.count(), 1);
    QCOMPARE(editOut.count(), 0);
    QApplication::sendEvent(&edit, &out);
    QApplication::sendEvent(&text, &out);
    QCOMPARE(editOut.count(), 1);
    QCOMPARE(textOut.count(), 1);
}

QTEST_MAIN(tst_LineEdit)
#include "tst_lineedit.moc"
