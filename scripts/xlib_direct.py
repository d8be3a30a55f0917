"""Direct Xlib access for tests and benchmarks: reads screen pixels and sends XTest input over
one connection, through ctypes (libX11 and libXtst are on every X11 desktop)."""

import ctypes


class Xlib:
    """One Xlib connection of the test process: screen pixels and XTest input without starting
    a helper process for each, so that what is timed or raced is the application alone."""

    def __init__(self, display):
        self.x = ctypes.CDLL("libX11.so.6")
        self.xtst = ctypes.CDLL("libXtst.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XOpenDisplay.argtypes = [ctypes.c_char_p]
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.x.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        self.x.XGetImage.restype = ctypes.c_void_p
        self.x.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int,
                                     ctypes.c_uint, ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]
        self.x.XStringToKeysym.restype = ctypes.c_ulong
        self.x.XStringToKeysym.argtypes = [ctypes.c_char_p]
        self.x.XKeysymToKeycode.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
        self.x.XFree.argtypes = [ctypes.c_void_p]
        self.x.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
        self.x.XGrabKeyboard.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int,
                                         ctypes.c_int, ctypes.c_int, ctypes.c_ulong]
        self.x.XUngrabKeyboard.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
        self.xtst.XTestFakeKeyEvent.argtypes = [ctypes.c_void_p, ctypes.c_uint, ctypes.c_int,
                                                ctypes.c_ulong]
        self.xtst.XTestFakeMotionEvent.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int,
                                                   ctypes.c_int, ctypes.c_ulong]
        self.xtst.XTestFakeButtonEvent.argtypes = [ctypes.c_void_p, ctypes.c_uint, ctypes.c_int,
                                                   ctypes.c_ulong]
        self.display = self.x.XOpenDisplay(display.encode())
        self.root = self.x.XDefaultRootWindow(self.display)

    def grab_keyboard(self, grab=True):
        """Holds the keyboard as a screenshot tool or an open menu does; True when granted."""
        if not grab:
            self.x.XUngrabKeyboard(self.display, 0)
            self.x.XSync(self.display, 0)
            return True
        # owner_events False, both modes asynchronous (1), CurrentTime (0); GrabSuccess is 0.
        granted = self.x.XGrabKeyboard(self.display, self.root, 0, 1, 1, 0) == 0
        self.x.XSync(self.display, 0)
        return granted

    def pixel(self, x, y):
        """(red, green, blue) of the screen at x, y, read from the server in one request."""
        image = self.x.XGetImage(self.display, self.root, x, y, 1, 1, 0xFFFFFFFF, 2)
        # XImage: int width, height, xoffset, format; char *data. A 24-bit screen stores
        # blue, green, red, unused.
        data = ctypes.cast(image + 16, ctypes.POINTER(ctypes.c_void_p)).contents.value
        blue, green, red = ctypes.string_at(data, 3)
        self.x.XFree(data)
        self.x.XFree(image)
        return red, green, blue

    def keys(self, *names, press=True):
        for name in names:
            code = self.x.XKeysymToKeycode(self.display, self.x.XStringToKeysym(name.encode()))
            self.xtst.XTestFakeKeyEvent(self.display, code, press, 0)
        self.x.XSync(self.display, 0)

    def chord(self, *names):
        self.keys(*names, press=True)
        self.keys(*reversed(names), press=False)

    def move(self, x, y):
        self.xtst.XTestFakeMotionEvent(self.display, -1, x, y, 0)
        self.x.XSync(self.display, 0)

    def button(self, press):
        self.xtst.XTestFakeButtonEvent(self.display, 1, press, 0)
        self.x.XSync(self.display, 0)
