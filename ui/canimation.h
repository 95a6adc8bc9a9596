// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QTimer>

class QPainter;

namespace Dravo {

// A frame-strip animation: all frames lie side by side in one image of equal width and are
// stepped by a repeating timer.
class CAnimation : public QObject
{
    Q_OBJECT
public:
    // Names an animation: the strip image, how many frames it holds and the frame interval.
    struct Descriptor
    {
        Descriptor(const QString& strImage, int iFramesCount, int iInterval)
            : m_strImage(strImage), m_iFramesCount(iFramesCount), m_iInterval(iInterval)
        {
        }
        QString m_strImage;
        int m_iFramesCount;
        int m_iInterval;
    };

    // The busy indicator of the toolkit's widgets.
    static const Descriptor PROGRESS_ANIMATION;

    explicit CAnimation(const Descriptor& descriptor, QObject* parent = nullptr);
    CAnimation(const QString& strPath, int iFramesCount, int iInterval, QObject* parent = nullptr);

    bool load(const QString& strPath, int iFramesCount, int iInterval);
    bool load(const Descriptor& descriptor);

    void setFramesCount(int iFramesCount);
    void setInterval(int iInterval);

    int framesCount() const { return m_iFramesCount; }
    int currentFrame() const { return m_iCurrentFrame; }
    int interval() const { return m_timer.interval(); }
    bool isRunning() const { return m_timer.isActive(); }
    const QImage& image() const { return m_image; }

    bool start();
    void stop();
    // The current frame inside the strip; invalid when there is nothing to show.
    QRect frameRect() const;

    // Draws the current frame at its own size with its top-left corner at pos.
    void draw(QPainter* pPainter, const QPoint& pos) const;
    // Draws the current frame scaled into target.
    void draw(QPainter* pPainter, const QRect& target) const;

signals:
    void frameChanged();
    void started();
    void stopped();

private slots:
    void onTimeout();

private:
    int m_iFramesCount;
    int m_iCurrentFrame;
    QImage m_image;
    QTimer m_timer;
};

}  // namespace Dravo
