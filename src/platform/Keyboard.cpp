// Modifier keys: Qt knows the held modifiers of its application; the lock
// states are indicators that only the X server knows.
#include "CrossPlatformApi.h"

#include <QGuiApplication>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>

namespace CrossPlatformApi {
namespace {

int heldModifier(Qt::KeyboardModifier modifier)
{
    if (!QGuiApplication::instance())
        return 0;
    return (QGuiApplication::queryKeyboardModifiers() & modifier) ? 1 : 0;
}

int lockIndicator(const char* indicatorName)
{
    Display* display = XOpenDisplay(nullptr);
    if (!display)
        return 0;
    Bool on = False;
    const Atom atom = XInternAtom(display, indicatorName, False);
    const bool known = XkbGetNamedIndicator(display, atom, nullptr, &on, nullptr, nullptr);
    XCloseDisplay(display);
    return known && on ? 1 : 0;
}

} // namespace

int KeyboardState::keyState(KeyType key)
{
    switch (key) {
    case KeyShift: return heldModifier(Qt::ShiftModifier);
    case KeyControl: return heldModifier(Qt::ControlModifier);
    case KeyCommand: return heldModifier(Qt::MetaModifier);
    case KeyOption: return heldModifier(Qt::AltModifier);
    case KeyCapsLock: return lockIndicator("Caps Lock");
    case KeyNumLock: return lockIndicator("Num Lock");
    }
    return 0;
}

} // namespace CrossPlatformApi
