import QtQuick
import QtTest
import Tolvenary

Item {
    width: 520
    height: 541

    PanelCase {
        name: "ApplicationPicker"

        readonly property list<string> many: Array.from({length: 60}, (_, i) => "App " + String(i).padStart(2, "0"))

        function shownText(): string {
            return item("text", item("appPicker")).text;
        }

        function open(): Item {
            mouseClick(item("appPicker"));
            tryVerify(() => item("appPicker").opened);
            return item("appPicker").menu.list;
        }

        function rowOf(list: Item, row: int): Item {
            tryVerify(() => list.itemAtIndex(row) !== null);
            return list.itemAtIndex(row);
        }

        function test_withoutApplicationsThereIsOnlyThePlaceholder() {
            compare(shownText(), "— pick an app —");
            compare(open().count, 1);
        }

        function test_aNameIsShownVerbatim() {
            stage.runApplications(["**x** <b>y</b>"]);
            stage.pick("**x** <b>y</b>");
            compare(shownText(), "**x** <b>y</b>");
            verifyShownVerbatim(item("text", item("appPicker")));
        }

        function test_aClickOnARowPicksIt() {
            stage.runApplications(["Discord", "Firefox"]);
            const list = open();
            mouseClick(rowOf(list, 2));
            compare(stage.coordinator.selectedAppID, 2);
            compare(shownText(), "Firefox");
            tryVerify(() => !item("appPicker").opened);
        }

        function test_thePlaceholderTakesThePickBack() {
            stage.runApplications(["Discord"]);
            stage.pick("Discord");
            const list = open();
            mouseClick(rowOf(list, 0));
            compare(stage.coordinator.selectedAppID, undefined);
            compare(shownText(), "— pick an app —");
        }

        function test_arrowsAndReturnPickWithoutStartingTheMix() {
            stage.plugIn(["BlackHole 2ch"]);
            stage.runApplications(["Discord", "Firefox"]);
            open();
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            wait(0);
            compare(stage.coordinator.selectedAppID, 2);
            verify(!stage.coordinator.isRunning);
            compare(stage.coordinator.status, "Idle");
        }

        function test_escapeClosesAndPicksNothing() {
            stage.runApplications(["Discord", "Firefox"]);
            open();
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Escape);
            tryVerify(() => !item("appPicker").opened);
            compare(stage.coordinator.selectedAppID, undefined);
        }

        function test_typingLeadsToTheRowThatBeginsSo() {
            stage.runApplications(["Discord", "Spotify", "Steam"]);
            const list = open();
            keyClick("s");
            keyClick("t");
            compare(list.currentIndex, 3);
        }

        function test_typingOnTheClosedPickerPicks() {
            stage.runApplications(["Discord", "Spotify"]);
            item("appPicker").forceActiveFocus(Qt.TabFocusReason);
            keyClick("s");
            compare(shownText(), "Spotify");
        }

        function test_spaceOpensTheFocusedPicker() {
            item("appPicker").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => item("appPicker").opened);
        }

        function test_arrowsAndWheelOnTheClosedPickerGoARowOn() {
            stage.runApplications(["Discord", "Firefox"]);
            item("appPicker").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Down);
            compare(shownText(), "Discord");
            mouseWheel(item("appPicker"), 20, 10, 0, -120);
            compare(shownText(), "Firefox");
            mouseWheel(item("appPicker"), 20, 10, 0, -120);
            compare(shownText(), "Firefox");
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Up);
            compare(shownText(), "— pick an app —");
        }

        function test_aTouchpadsSmallTurnsOnTheClosedPickerAddUpToARow() {
            stage.runApplications(["Discord", "Firefox", "Spotify"]);
            for (let part = 0; part < 7; ++part)
                mouseWheel(item("appPicker"), 20, 10, 0, -30);
            compare(shownText(), "Discord");
            mouseWheel(item("appPicker"), 20, 10, 0, -30);
            compare(shownText(), "Firefox");
        }

        function test_everyRowIsThereInItsOrderBeforeAnyoneScrolls() {
            stage.runApplications(many.slice(30));
            open();
            keyClick(Qt.Key_Escape);
            tryVerify(() => !item("appPicker").opened);
            stage.runApplications(many);
            const list = open();
            const made = Array.from(list.contentItem.children).filter(child => child instanceof PickerRow);
            compare(made.map(row => row.text), ["— pick an app —"].concat(many));
        }

        function test_aLongListStaysInTheWindowAndScrolls() {
            stage.runApplications(many);
            const list = open();
            const top = list.mapToItem(panel, 0, 0).y;
            verify(top >= 0);
            verify(top + list.height <= panel.height);
            compare(list.contentY, 0);
            keyClick(Qt.Key_End);
            tryVerify(() => list.contentY > 0);
            compare(list.currentIndex, many.length);
            keyClick(Qt.Key_Return);
            compare(shownText(), "App 59");
            const again = open();
            tryVerify(() => again.contentY > 0);
            compare(again.currentItem.text, "App 59");
        }

        function test_anOpenListKeepsItsPlaceWhileApplicationsComeAndGo() {
            stage.runApplications(many);
            const list = open();
            list.currentIndex = 40;
            tryVerify(() => list.contentY > 0);
            const shown = list.currentItem.text;
            const place = () => Math.round(list.currentItem.mapToItem(panel, 0, 0).y);
            const before = place();
            stage.runApplications(many.concat(["Zoo"]));
            compare(list.currentItem.text, shown);
            compare(place(), before);
            verify(item("appPicker").opened);
        }

        function test_anOpenListKeepsTheHighlightWhenApplicationsComeAndGoAbove_data() {
            return [{tag: "come"}, {tag: "go"}, {tag: "both"}];
        }

        function test_anOpenListKeepsTheHighlightWhenApplicationsComeAndGoAbove(data) {
            const processes = many.map((name, i) => ({processID: 1000 + i, applicationName: name}));
            stage.runProcesses(processes);
            const list = open();
            list.currentIndex = 40;
            tryVerify(() => list.contentY > 0);
            const shown = list.currentItem.text;
            const place = () => Math.round(list.currentItem.mapToItem(panel, 0, 0).y);
            const before = place();
            const rest = data.tag === "come" ? processes : processes.slice(2);
            const added = data.tag === "go" ? [] : [{processID: 7, applicationName: "Aardvark"}];
            stage.runProcesses(added.concat(rest));
            compare(list.count, added.length + rest.length + 1);
            compare(list.currentItem.text, shown);
            verify(list.currentItem.highlighted);
            compare(place(), before);
            verify(item("appPicker").opened);
            keyClick(Qt.Key_Return);
            compare(shownText(), shown);
        }

        function test_theHighlightOfAnApplicationThatGoesStaysInTheList() {
            stage.runApplications(["Discord", "Firefox"]);
            const list = open();
            list.currentIndex = 2;
            stage.runApplications(["Discord"]);
            compare(list.count, 2);
            verify(list.currentIndex >= 0);
            verify(list.currentIndex < list.count);
            verify(item("appPicker").opened);
        }

        function test_aNameIsShownVerbatimInTheOpenListToo() {
            stage.runApplications(["**x** <b>y</b>"]);
            const row = rowOf(open(), 1);
            const texts = Array.from(row.children).filter(child => child.text === "**x** <b>y</b>");
            compare(texts.length, 1);
            verifyShownVerbatim(texts[0]);
        }

        function verifyInItsPlace(label: Item, place: Item) {
            compare(label.lineCount, 1);
            const box = label.mapToItem(place, 0, 0, label.width, label.height);
            verify(label.contentWidth <= label.width, label.contentWidth + " in " + label.width);
            verify(box.left >= 0 && box.right <= place.width);
            verify(box.top >= 0 && box.bottom <= place.height);
        }

        function test_strangeNamesLeaveRowsAndWindowAsTheyAre() {
            stage.runStrangers();
            const button = item("appPicker");
            const buttonHeight = button.height;
            const list = open();
            compare(list.count, 5);
            const made = Array.from(list.contentItem.children).filter(child => child instanceof PickerRow);
            compare(made.length, 5);
            for (const row of made) {
                compare(row.height, list.rowHeight);
                compare(row.width, list.width);
                verify(row.mapToItem(panel, row.width, 0).x <= panel.width);
                for (const label of Array.from(row.children).filter(child => child instanceof PanelText))
                    verifyInItsPlace(label, row);
            }
            compare(list.height, 5 * list.rowHeight);
            compare(panel.width, 520);
            mouseClick(made.find(row => row.text === "Discord"));
            compare(shownText(), "Discord");
            for (const process of [2, 3, 4]) {
                stage.coordinator.selectedAppID = process;
                verifyInItsPlace(item("text", button), button);
                compare(button.height, buttonHeight);
            }
        }

        function test_withoutAChosenRowTheListOpensWithoutATick() {
            stage.runApplications(["Discord", "Firefox"]);
            stage.pick("Firefox");
            stage.runApplications(["Discord"]);
            const list = open();
            for (const row of [0, 1])
                verify(!rowOf(list, row).chosen);
            compare(list.contentY, 0);
        }

        function test_anApplicationThatHasGoneLeavesAnEmptyButton() {
            stage.runApplications(["Discord", "Firefox"]);
            stage.pick("Firefox");
            stage.runApplications(["Discord"]);
            compare(shownText(), "");
            compare(stage.coordinator.selectedAppID, 2);
        }
    }
}
