// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The reference of the start-up benchmark: the least a Qt Widgets program does to show
// an 800x450 window. With TARVIK_EXIT_WHEN_SHOWN=1 it reports and quits once the window
// is shown, through the same probe the client has.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("bare"));
    window.setGeometry(0, 0, 800, 450);
    window.show();
    return app.exec();
}
