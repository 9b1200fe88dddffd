// Mouse and key input sent to a widget as the window system delivers it. A
// gesture or a key stops half-way when the widget goes away under it (a
// page may close, and be released, on a press).
#pragma once

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>

#include <vector>

namespace kelmar::test {

inline void sendMouse(QWidget* w, QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent event(type, at, w->mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(w, &event);
}

// Presses at the first point, moves through the others with the button
// held and lets go at the last one, unless told to keep holding.
inline void gesture(QWidget* w, const std::vector<QPointF>& path, Qt::MouseButton button = Qt::LeftButton,
                    bool release = true) {
    const QPointer<QWidget> alive(w);
    sendMouse(w, QEvent::MouseButtonPress, path.front(), button, button);
    for (std::size_t i = 1; i < path.size() && alive; ++i)
        sendMouse(w, QEvent::MouseMove, path[i], Qt::NoButton, button);
    if (alive && release) sendMouse(w, QEvent::MouseButtonRelease, path.back(), button, Qt::NoButton);
}

inline void sendKey(QWidget* target, int key, const QString& text = {},
                    Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const QPointer<QWidget> alive(target);
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    if (alive) QApplication::sendEvent(target, &release);
}

inline void pressReturn(QWidget* target) { sendKey(target, Qt::Key_Return, QStringLiteral("\r")); }

// A list choice as the analyst makes it: the list's own activation follows.
inline void choose(QComboBox* list, int index) {
    const QPointer<QComboBox> alive(list);
    list->setCurrentIndex(index);
    if (alive && index >= 0) emit list->activated(index);
}

// Types the text key by key: digits, letters and signs.
inline void typeKeys(QWidget* target, const QString& text) {
    const QPointer<QWidget> alive(target);
    for (QChar c : text)
        if (alive) sendKey(target, c.toUpper().unicode(), QString(c));
}

}  // namespace kelmar::test
