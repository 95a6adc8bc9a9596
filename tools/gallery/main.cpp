// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Renders the toolkit's widgets and art into one picture, for looking at them together.

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QStyleFactory>
#include <QVBoxLayout>

#include "clineedit.h"
#include "ctextedit.h"
#include "ctitle.h"
#include "ctwlabel.h"
#include "ctwlistitemdelegate.h"
#include "ctwlistview.h"
#include "ctwpopup.h"
#include "ctwpushbutton.h"
#include "ctwtoolbar.h"
#include "ctwtoolbutton.h"
#include "ctwwidget.h"
#include "uiresources.h"

using namespace Dravo;

namespace {

const QColor ACCENT(0x2b, 0xc4, 0xe8);

QLabel* caption(const QString& strText)
{
    QLabel* pLabel = new QLabel(strText.toUpper());
    QFont font = pLabel->font();
    font.setPointSizeF(font.pointSizeF() * 0.8);
    font.setBold(true);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 1.5);
    pLabel->setFont(font);
    QPalette palette = pLabel->palette();
    palette.setColor(QPalette::WindowText, QColor(0x8a, 0x96, 0xa3));
    pLabel->setPalette(palette);
    return pLabel;
}

QVBoxLayout* section(QBoxLayout* pParent, const QString& strTitle)
{
    QVBoxLayout* pBox = new QVBoxLayout;
    pBox->setSpacing(6);
    pBox->addWidget(caption(strTitle));
    pParent->addLayout(pBox);
    return pBox;
}

QWidget* menuList()
{
    static const char* const s_entries[][2] = {{"send", "Send a tarvik"}, {"inbox", "Inbox"},
                                               {"outbox", "Outbox"},      {"sent", "Sent tarviks"},
                                               {"settings", "Settings"},  {"feedback", "Feedback"},
                                               {"about", "About tarvik"}};
    QListWidget* pList = new QListWidget;
    pList->setFrameShape(QFrame::NoFrame);
    pList->viewport()->setAutoFillBackground(false);
    pList->setItemDelegate(new CTWListItemDelegate(pList));
    pList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pList->setIconSize(QSize(32, 32));
    for (const auto& entry : s_entries)
        new QListWidgetItem(QIcon(QStringLiteral(":/res/img/%1.png").arg(entry[0])),
                            QString::fromLatin1(entry[1]), pList);
    pList->setCurrentRow(1);
    pList->setFixedSize(300, 7 * 66);
    return pList;
}

CTWListView* stateList(const QString& strEmpty, int iRows, bool bBusy)
{
    CTWListView* pView = new CTWListView(strEmpty);
    QStandardItemModel* pModel = new QStandardItemModel(pView);
    static const char* const s_icons[] = {"message_unread",      "message_read", "message_sending",
                                          "message_failed_send", "message_sent", "message_draft"};
    static const char* const s_texts[] = {
        "Ann  - Coffee at the harbour?", "Ben  - Found it!",       "Cleo  - On my way",
        "Dan  - Meet at the gate",       "Eve  - Thanks, see you", "< empty >"};
    for (int i = 0; i < iRows; ++i) {
        QStandardItem* pItem = new QStandardItem(
            QIcon(QStringLiteral(":/res/img/%1.png").arg(s_icons[i % 6])), s_texts[i % 6]);
        pModel->appendRow(pItem);
    }
    pView->setModel(pModel);
    CTWListItemDelegate* pDelegate = new CTWListItemDelegate(pView);
    pView->setItemDelegate(pDelegate);
    pView->setIconSize(QSize(32, 32));
    pView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pView->setFixedSize(300, 200);
    if (bBusy) {
        pView->setBusy(true);
        QMetaObject::invokeMethod(pView->animation(), "onTimeout");
    }
    return pView;
}

CTWPopup* popup(const QString& strText, bool bBusy, bool bLogo)
{
    CTWPopup* pPopup = new CTWPopup;
    pPopup->setSkin(CSkin(QStringLiteral(":/res_ui/img/popup_bg.png")));
    pPopup->setFixedSize(bLogo ? 380 : 350, bLogo ? 210 : 150);
    QVBoxLayout* pBox = new QVBoxLayout(pPopup);
    pBox->setContentsMargins(26, 22, 26, 26);
    if (bLogo) {
        QLabel* pLogo = new QLabel;
        pLogo->setPixmap(QPixmap(QStringLiteral(":/res/img/tarvik_logo.png")));
        pLogo->setAlignment(Qt::AlignCenter);
        pBox->addWidget(pLogo);
    }
    QLabel* pText = new QLabel(strText);
    pText->setWordWrap(true);
    pText->setAlignment(Qt::AlignCenter);
    pBox->addWidget(pText);
    if (bBusy) {
        CTWLabel* pAnimation = new CTWLabel;
        pAnimation->animation()->load(
            CAnimation::Descriptor(QStringLiteral(":/res/img/progress_anim.png"), 8, 300));
        pAnimation->setFixedHeight(44);
        pAnimation->setBusy(true);
        for (int i = 0; i < 3; ++i)
            QMetaObject::invokeMethod(pAnimation->animation(), "onTimeout");
        pBox->addWidget(pAnimation);
    }
    return pPopup;
}

CTWToolButton* toolButton(const QString& strName, bool bDown = false, bool bEnabled = true)
{
    CTWToolButton* pButton =
        CTWToolButton::createButton(QIcon(QStringLiteral(":/res/img/%1.png").arg(strName)));
    pButton->setDown(bDown);
    pButton->setEnabled(bEnabled);
    return pButton;
}

QWidget* mapControls()
{
    QWidget* pPanel = new QWidget;
    pPanel->setFixedWidth(105);
    QGridLayout* pGrid = new QGridLayout(pPanel);
    pGrid->setContentsMargins(0, 0, 0, 0);
    pGrid->setSpacing(0);
    pGrid->addWidget(toolButton("arrow_north"), 0, 0, 1, 2, Qt::AlignCenter);
    pGrid->addWidget(toolButton("arrow_west"), 1, 0);
    pGrid->addWidget(toolButton("arrow_east", true), 1, 1);
    pGrid->addWidget(toolButton("arrow_south"), 2, 0, 1, 2, Qt::AlignCenter);
    pGrid->addItem(new QSpacerItem(1, 5), 3, 0);
    pGrid->addWidget(toolButton("zoom_plus"), 4, 0);
    pGrid->addWidget(toolButton("zoom_minus", false, false), 4, 1);
    return pPanel;
}

CTWToolBar* sideToolBar()
{
    CTWToolBar* pBar = new CTWToolBar(QBoxLayout::TopToBottom);
    pBar->setSkin(CSkin(QStringLiteral(":/res_ui/img/toolbar.png")));
    pBar->boxLayout()->setSpacing(10);
    pBar->boxLayout()->setContentsMargins(10, 10, 10, 10);
    pBar->boxLayout()->addWidget(mapControls(), 0, Qt::AlignHCenter);
    pBar->boxLayout()->addStretch();
    for (const char* pText : {"Show\non map", "Reply", "Back"}) {
        CTWPushButton* pButton = new CTWPushButton(QString::fromLatin1(pText));
        pButton->setMinimumHeight(48);
        pBar->boxLayout()->addWidget(pButton);
    }
    pBar->setFixedSize(150, 560);
    return pBar;
}

// A skinned field: the line edit sits frameless on the line_edit_bg skin.
QWidget* field(CLineEdit* pEdit, const QString& strText)
{
    CTWWidget* pBack = new CTWWidget;
    pBack->setSkin(CSkin(QStringLiteral(":/res_ui/img/line_edit_bg.png")));
    pBack->setFixedSize(300, 34);
    QHBoxLayout* pBox = new QHBoxLayout(pBack);
    pBox->setContentsMargins(12, 3, 12, 3);
    pEdit->setFrame(false);
    pEdit->setText(strText);
    QPalette palette = pEdit->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    pEdit->setPalette(palette);
    pBox->addWidget(pEdit);
    return pBack;
}

QWidget* skinSample(const QString& strSkin, const QSize& size, const QString& strText)
{
    CTWLabel* pLabel = new CTWLabel(strText);
    pLabel->setSkin(CSkin(QStringLiteral(":/res_ui/img/%1.png").arg(strSkin)));
    pLabel->setAlignment(Qt::AlignCenter);
    pLabel->setFixedSize(size);
    return pLabel;
}

QWidget* stripRow(const QString& strPath)
{
    QWidget* pRow = new QWidget;
    QHBoxLayout* pBox = new QHBoxLayout(pRow);
    pBox->setContentsMargins(0, 0, 0, 0);
    pBox->setSpacing(4);
    const QPixmap strip(strPath);
    for (int i = 0; i < 8; ++i) {
        QLabel* pFrame = new QLabel;
        pFrame->setPixmap(strip.copy(i * 40, 0, 40, 40));
        pBox->addWidget(pFrame);
    }
    pBox->addStretch();
    return pRow;
}

QWidget* iconRow(const QStringList& names)
{
    QWidget* pRow = new QWidget;
    QHBoxLayout* pBox = new QHBoxLayout(pRow);
    pBox->setContentsMargins(0, 0, 0, 0);
    pBox->setSpacing(14);
    for (const QString& strName : names) {
        QLabel* pIcon = new QLabel;
        pIcon->setPixmap(QPixmap(QStringLiteral(":/res/img/%1.png").arg(strName)));
        pBox->addWidget(pIcon);
    }
    pBox->addStretch();
    return pRow;
}

void darkPalette(QApplication& app)
{
    app.setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::black);
    palette.setColor(QPalette::WindowText, QColor(0xe9, 0xee, 0xf2));
    palette.setColor(QPalette::Base, QColor(0x0e, 0x11, 0x14));
    palette.setColor(QPalette::Text, QColor(0xe9, 0xee, 0xf2));
    palette.setColor(QPalette::Button, QColor(0x2a, 0x30, 0x38));
    palette.setColor(QPalette::ButtonText, QColor(0xe9, 0xee, 0xf2));
    palette.setColor(QPalette::Highlight, ACCENT.darker(160));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    app.setPalette(palette);
}

}  // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    initUiResources();
    darkPalette(app);
    const QString strOut =
        argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("tarvik-gallery.png");

    QWidget window;
    window.setAutoFillBackground(true);
    QVBoxLayout* pPage = new QVBoxLayout(&window);
    pPage->setContentsMargins(0, 0, 0, 24);
    pPage->setSpacing(18);

    CTitle* pTitle = new CTitle;
    pTitle->setText(QStringLiteral("tarvik toolkit gallery"));
    pPage->addWidget(pTitle);

    QHBoxLayout* pColumns = new QHBoxLayout;
    pColumns->setContentsMargins(24, 0, 24, 0);
    pColumns->setSpacing(28);
    pPage->addLayout(pColumns);

    QVBoxLayout* pLeft = section(pColumns, "Menu list, one row selected");
    pLeft->addWidget(menuList());
    pLeft->addStretch();

    QVBoxLayout* pMiddle = new QVBoxLayout;
    pColumns->addLayout(pMiddle);
    section(pMiddle, "Folder list")->addWidget(stateList(QString(), 6, false));
    QHBoxLayout* pStates = new QHBoxLayout;
    pStates->setSpacing(12);
    CTWListView* pBusy = stateList(QString(), 4, true);
    pBusy->setFixedSize(144, 130);
    CTWListView* pEmpty = stateList(QStringLiteral("No tarviks"), 0, false);
    pEmpty->setFixedSize(144, 130);
    QVBoxLayout* pBusyBox = section(pStates, "Busy");
    pBusyBox->addWidget(pBusy);
    QVBoxLayout* pEmptyBox = section(pStates, "Empty");
    pEmptyBox->addWidget(pEmpty);
    pMiddle->addLayout(pStates);
    QVBoxLayout* pInputs = section(pMiddle, "Inputs: phone, read-only, phone or e-mail");
    pInputs->addWidget(field(new CLineEdit(nullptr, CLineEdit::eLineEditPhone), "+4930123456"));
    pInputs->addWidget(
        field(new CLineEdit(nullptr, CLineEdit::eLineEditNavigateOnly), "From: Ann"));
    pInputs->addWidget(
        field(new CLineEdit(nullptr, CLineEdit::eLineEditPhoneEmail), "ann@example.org"));
    CTextEdit* pNote = new CTextEdit(QStringLiteral("Meet me by the lighthouse at six."));
    pNote->setFixedSize(300, 56);
    pInputs->addWidget(pNote);
    pMiddle->addStretch();

    QVBoxLayout* pRight = new QVBoxLayout;
    pColumns->addLayout(pRight);
    section(pRight, "Popup with progress")
        ->addWidget(popup(QStringLiteral("Requesting your current location..."), true, false));
    section(pRight, "Popup with logo")
        ->addWidget(popup(QStringLiteral("Please wait while your registration is completed."),
                          false, true));
    QVBoxLayout* pButtons = section(pRight, "Button skins, normal and lit");
    QHBoxLayout* pSkinRow = new QHBoxLayout;
    pSkinRow->setSpacing(12);
    pSkinRow->addWidget(skinSample("btn_bg", QSize(120, 44), "Contacts"));
    pSkinRow->addWidget(skinSample("btn_bg_hl", QSize(120, 44), "Send"));
    pSkinRow->addStretch();
    pButtons->addLayout(pSkinRow);
    pRight->addStretch();

    QVBoxLayout* pBar = section(pColumns, "Tool bar, map keys");
    pBar->addWidget(sideToolBar());
    pBar->addStretch();

    QVBoxLayout* pArt = new QVBoxLayout;
    pArt->setContentsMargins(24, 0, 24, 0);
    pArt->setSpacing(10);
    pPage->addLayout(pArt);
    pArt->addWidget(caption("Icons"));
    pArt->addWidget(iconRow({"send", "inbox", "outbox", "sent", "settings", "feedback", "about",
                             "message_read", "message_unread", "message_sent", "message_sending",
                             "message_failed_send", "message_draft", "arrow_north", "arrow_west",
                             "arrow_east", "arrow_south", "zoom_plus", "zoom_minus"}));
    pArt->addWidget(caption("Busy strips"));
    QHBoxLayout* pStrips = new QHBoxLayout;
    pStrips->addWidget(stripRow(QStringLiteral(":/res_ui/img/refresh_anim.png")));
    pStrips->addWidget(stripRow(QStringLiteral(":/res/img/progress_anim.png")));
    pArt->addLayout(pStrips);
    pArt->addWidget(caption("Logos"));
    pArt->addWidget(iconRow({"tarvik_logo_large", "tarvik_logo"}));

    window.show();
    window.adjustSize();
    QApplication::processEvents();
    const QImage image = window.grab().toImage();
    if (!image.save(strOut)) {
        qCritical("tarvik-gallery: cannot write %s", qPrintable(strOut));
        return 1;
    }
    qInfo("tarvik-gallery: wrote %s (%dx%d)", qPrintable(strOut), image.width(), image.height());
    return 0;
}
