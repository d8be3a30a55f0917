"""Direct Xlib access for tests and benchmarks: reads screen pixels and sends XTest input over
one connection, through ctypes (libX11 and libXtst are on every X11 desktop)."""

import ctypes


class WindowAttributes(ctypes.Structure):
    _fields_ = [("x", ctypes.c_int), ("y", ctypes.c_int), ("width", ctypes.c_int),
                ("height", ctypes.c_int), ("border_width", ctypes.c_int),
                ("depth", ctypes.c_int), ("visual", ctypes.c_void_p), ("root", ctypes.c_ulong),
                ("window_class", ctypes.c_int), ("bit_gravity", ctypes.c_int),
                ("win_gravity", ctypes.c_int), ("backing_store", ctypes.c_int),
                ("backing_planes", ctypes.c_ulong), ("backing_pixel", ctypes.c_ulong),
                ("save_under", ctypes.c_int), ("colormap", ctypes.c_ulong),
                ("map_installed", ctypes.c_int), ("map_state", ctypes.c_int),
                ("all_event_masks", ctypes.c_long), ("your_event_mask", ctypes.c_long),
                ("do_not_propagate_mask", ctypes.c_long), ("override_redirect", ctypes.c_int),
                ("screen", ctypes.c_void_p)]


class SetWindowAttributes(ctypes.Structure):
    _fields_ = [("background_pixmap", ctypes.c_ulong), ("background_pixel", ctypes.c_ulong),
                ("border_pixmap", ctypes.c_ulong), ("border_pixel", ctypes.c_ulong),
                ("bit_gravity", ctypes.c_int), ("win_gravity", ctypes.c_int),
                ("backing_store", ctypes.c_int), ("backing_planes", ctypes.c_ulong),
                ("backing_pixel", ctypes.c_ulong), ("save_under", ctypes.c_int),
                ("event_mask", ctypes.c_long), ("do_not_propagate_mask", ctypes.c_long),
                ("override_redirect", ctypes.c_int), ("colormap", ctypes.c_ulong),
                ("cursor", ctypes.c_ulong)]


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
        self.x.XQueryTree.argtypes = [ctypes.c_void_p, ctypes.c_ulong,
                                      ctypes.POINTER(ctypes.c_ulong),
                                      ctypes.POINTER(ctypes.c_ulong),
                                      ctypes.POINTER(ctypes.POINTER(ctypes.c_ulong)),
                                      ctypes.POINTER(ctypes.c_uint)]
        self.x.XGetWindowAttributes.argtypes = [ctypes.c_void_p, ctypes.c_ulong,
                                                ctypes.POINTER(WindowAttributes)]
        # A window may go between listing and asking about it: its BadWindow is not fatal.
        self._ignore_errors = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(
            lambda display, event: 0)
        self.x.XSetErrorHandler.argtypes = [ctypes.c_void_p]
        self.x.XSetErrorHandler(self._ignore_errors)
        self.x.XCreateWindow.restype = ctypes.c_ulong
        self.x.XCreateWindow.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int,
                                         ctypes.c_int, ctypes.c_uint, ctypes.c_uint,
                                         ctypes.c_uint, ctypes.c_int, ctypes.c_uint,
                                         ctypes.c_void_p, ctypes.c_ulong,
                                         ctypes.POINTER(SetWindowAttributes)]
        self.x.XMapRaised.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
        self.x.XDestroyWindow.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
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

    def children(self, window=None):
        """The children of `window` (the root by default), bottom of the stack first."""
        root, parent = ctypes.c_ulong(), ctypes.c_ulong()
        children, count = ctypes.POINTER(ctypes.c_ulong)(), ctypes.c_uint()
        if not self.x.XQueryTree(self.display, window or self.root, ctypes.byref(root),
                                 ctypes.byref(parent), ctypes.byref(children),
                                 ctypes.byref(count)):
            return []
        result = [children[i] for i in range(count.value)]
        if children:
            self.x.XFree(children)
        return result

    def viewable_children(self):
        """(window, override_redirect) of each viewable child of the root, bottom first."""
        result = []
        for window in self.children():
            attributes = WindowAttributes()
            # IsViewable is 2.
            if self.x.XGetWindowAttributes(self.display, window, ctypes.byref(attributes)) and \
                    attributes.map_state == 2:
                result.append((window, bool(attributes.override_redirect)))
        return result

    def popup(self, x, y, width, height, rgb=0xc04040):
        """Maps an override-redirect window on top, as a notification or a menu of another
        client does; destroy it with destroy()."""
        attributes = SetWindowAttributes(background_pixel=rgb, override_redirect=1)
        # CopyFromParent depth and visual, InputOutput; CWBackPixel | CWOverrideRedirect.
        window = self.x.XCreateWindow(self.display, self.root, x, y, width, height, 0, 0, 1,
                                      None, (1 << 1) | (1 << 9), ctypes.byref(attributes))
        self.x.XMapRaised(self.display, window)
        self.x.XSync(self.display, 0)
        return window

    def destroy(self, window):
        self.x.XDestroyWindow(self.display, window)
        self.x.XSync(self.display, 0)

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
