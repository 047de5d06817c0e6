// Lets the person's own programs choose among the input sources that the person has set up, as the
// menu in the panel does. For GNOME 45 and later.

import Gio from 'gi://Gio';
import GLib from 'gi://GLib';

import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';
import {getInputSourceManager} from 'resource:///org/gnome/shell/ui/status/keyboard.js';

// Programs see by it whether the extension is on.
const NAME = 'app.tessarok.InputSources';
const PATH = '/app/tessarok/InputSources';
const INTERFACE = `
<node>
  <interface name="app.tessarok.InputSources1">
    <method name="Activate">
      <arg type="s" direction="in" name="type"/>
      <arg type="s" direction="in" name="id"/>
      <arg type="b" direction="out" name="done"/>
    </method>
    <method name="Sync"/>
  </interface>
</node>`;

export default class TessarokExtension extends Extension {
    enable() {
        this._object = Gio.DBusExportedObject.wrapJSObject(INTERFACE, this);
        this._object.export(Gio.DBus.session, PATH);
        this._name = Gio.bus_own_name_on_connection(
            Gio.DBus.session, NAME, Gio.BusNameOwnerFlags.NONE, null, null);
    }

    disable() {
        Gio.bus_unown_name(this._name);
        this._name = 0;
        this._object.unexport();
        this._object = null;
    }

    // False when the person has no such source.
    Activate(type, id) {
        const sources = Object.values(getInputSourceManager().inputSources);
        const source = sources.find(one => one.type === type && one.id === id);
        if (source)
            source.activate(true);
        return source !== undefined;
    }

    // Answers when the shell has passed on to programs what input methods have sent before: it does
    // so when it has no events to handle, and draws only behind that.
    SyncAsync(parameters, invocation) {
        GLib.idle_add(GLib.PRIORITY_HIGH_IDLE, () => {
            invocation.return_value(null);
            return GLib.SOURCE_REMOVE;
        });
    }
}
