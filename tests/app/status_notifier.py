"""The StatusNotifierItem side of a panel, for tests: a watcher with a host that collects the
items registered on the session bus (run this file as a program), and a client that reads an
item's menu through com.canonical.dbusmenu and clicks its entries.
"""

import sys
import time

import dbus

WATCHER = "org.kde.StatusNotifierWatcher"
WATCHER_PATH = "/StatusNotifierWatcher"
MENU = "com.canonical.dbusmenu"

INTROSPECTION = """<node>
<interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg name="service" type="s" direction="in"/></method>
  <method name="RegisterStatusNotifierHost"><arg name="service" type="s" direction="in"/></method>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
  <signal name="StatusNotifierHostRegistered"/>
</interface>
<interface name="org.freedesktop.DBus.Properties">
  <method name="Get"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
  <method name="GetAll"><arg type="s" direction="in"/><arg type="a{sv}" direction="out"/></method>
</interface>
</node>"""


def run_watcher():
    import dbus.mainloop.glib
    import dbus.service
    from gi.repository import GLib

    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()

    class Watcher(dbus.service.Object):
        def __init__(self):
            self.items = []
            # Qt reads the host property through an interface built from introspection.
            self.bus_name = dbus.service.BusName(WATCHER, bus)
            super().__init__(self.bus_name, WATCHER_PATH)

        @dbus.service.method(WATCHER, in_signature="s", sender_keyword="sender")
        def RegisterStatusNotifierItem(self, service, sender=None):
            path = "/StatusNotifierItem"
            if service.startswith("/"):
                path, service = service, sender
            self.items.append(service + path)
            self.StatusNotifierItemRegistered(service + path)

        @dbus.service.method(WATCHER, in_signature="s")
        def RegisterStatusNotifierHost(self, service):
            pass

        @dbus.service.signal(WATCHER, signature="s")
        def StatusNotifierItemRegistered(self, item):
            pass

        @dbus.service.signal(WATCHER, signature="")
        def StatusNotifierHostRegistered(self):
            pass

        @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
        def Get(self, interface, name):
            return self.GetAll(interface)[name]

        @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
        def GetAll(self, interface):
            return {"RegisteredStatusNotifierItems": dbus.Array(self.items, signature="s"),
                    "IsStatusNotifierHostRegistered": dbus.Boolean(True),
                    "ProtocolVersion": dbus.Int32(0)}

        @dbus.service.method(dbus.INTROSPECTABLE_IFACE, out_signature="s")
        def Introspect(self):
            return INTROSPECTION

    Watcher()
    print("ready", flush=True)
    GLib.MainLoop().run()


def registered_items(timeout=15.0):
    """The items registered with the watcher, as "bus-name/object/path" strings."""
    bus = dbus.SessionBus()
    deadline = time.monotonic() + timeout
    while True:
        watcher = bus.get_object(WATCHER, WATCHER_PATH)
        items = list(watcher.Get(WATCHER, "RegisteredStatusNotifierItems",
                                 dbus_interface=dbus.PROPERTIES_IFACE))
        if items or time.monotonic() > deadline:
            return [str(item) for item in items]
        time.sleep(0.1)


class ItemMenu:
    """The menu of one StatusNotifierItem, read through com.canonical.dbusmenu."""

    def __init__(self, item):
        service, _, path = item.partition("/")
        bus = dbus.SessionBus()
        properties = bus.get_object(service, "/" + path)
        menu_path = properties.Get("org.kde.StatusNotifierItem", "Menu",
                                   dbus_interface=dbus.PROPERTIES_IFACE)
        self.menu = dbus.Interface(bus.get_object(service, menu_path), MENU)

    def entries(self):
        """[(id, label, shortcut text or None, is separator)] of the top level, in order."""
        self.menu.AboutToShow(0)
        _, layout = self.menu.GetLayout(0, 1, [])
        entries = []
        for child in layout[2]:
            identifier, props = int(child[0]), child[1]
            separator = props.get("type") == "separator"
            label = str(props.get("label", "")).replace("_", "", 1) if not separator else ""
            shortcut = props.get("shortcut")
            shortcut_text = "+".join(str(k) for k in shortcut[0]) if shortcut else None
            entries.append((identifier, label, shortcut_text, separator))
        return entries

    def click(self, label):
        for identifier, entry_label, _, separator in self.entries():
            if not separator and entry_label == label:
                self.menu.Event(identifier, "clicked", dbus.Int32(0), dbus.UInt32(0))
                return
        raise KeyError(label)


if __name__ == "__main__":
    sys.exit(run_watcher())
