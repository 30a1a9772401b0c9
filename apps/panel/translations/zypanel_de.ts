<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>zypanel::ConnectionBar</name>
    <message>
        <source>Sa&amp;ve…</source>
        <translation>&amp;Speichern…</translation>
    </message>
    <message>
        <source>Access token</source>
        <translation>Zugriffstoken</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keines</translation>
    </message>
    <message>
        <source>P&amp;rinter</source>
        <translation>Drucke&amp;r</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>&amp;Verbinden</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Nicht verbunden</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <translation>Verbindungsaufbau …</translation>
    </message>
    <message>
        <source>Dis&amp;connect</source>
        <translation>&amp;Trennen</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
    <message>
        <source>Connection: %1</source>
        <translation>Verbindung: %1</translation>
    </message>
    <message>
        <source>The printer is saved as %1.</source>
        <translation>Der Drucker ist als %1 gespeichert.</translation>
    </message>
    <message>
        <source>To&amp;ken</source>
        <translation>To&amp;ken</translation>
    </message>
    <message>
        <source>&amp;Give up</source>
        <translation>Auf&amp;geben</translation>
    </message>
    <message>
        <source>No answer</source>
        <translation>Keine Antwort</translation>
    </message>
    <message>
        <source>Connection lost</source>
        <translation>Verbindung verloren</translation>
    </message>
    <message>
        <source>Unknown printer “%1”: no printer is saved under this name. Give an address such as ws://192.168.1.20:8080.</source>
        <translation>Unbekannter Drucker „%1“: Unter diesem Namen ist kein Drucker gespeichert. Geben Sie eine Adresse wie ws://192.168.1.20:8080 ein.</translation>
    </message>
    <message>
        <source>“%1” is neither a saved printer nor an address such as ws://192.168.1.20:8080.</source>
        <translation>„%1“ ist weder ein gespeicherter Drucker noch eine Adresse wie ws://192.168.1.20:8080.</translation>
    </message>
    <message>
        <source>Forge&amp;t…</source>
        <translation>En&amp;tfernen…</translation>
    </message>
    <message>
        <source>Needed only by printers that ask for one</source>
        <translation>Nur für Drucker, die eines verlangen</translation>
    </message>
    <message>
        <source>Save this printer under a name</source>
        <translation>Diesen Drucker unter einem Namen speichern</translation>
    </message>
    <message>
        <source>Remove this printer from the saved ones</source>
        <translation>Diesen Drucker aus den gespeicherten entfernen</translation>
    </message>
    <message>
        <source>saved</source>
        <translation>gespeichert</translation>
    </message>
    <message>
        <source>Forget the printer</source>
        <translation>Drucker entfernen</translation>
    </message>
    <message>
        <source>Forget %1?</source>
        <translation>%1 entfernen?</translation>
    </message>
    <message>
        <source>Its address %1 and its access token are removed from the saved printers.</source>
        <translation>Die Adresse %1 und das Zugriffstoken werden aus den gespeicherten Druckern entfernt.</translation>
    </message>
    <message>
        <source>&amp;Forget</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>&amp;Keep it</source>
        <translation>&amp;Behalten</translation>
    </message>
    <message>
        <source>The printer %1 is no longer saved.</source>
        <translation>Der Drucker %1 ist nicht mehr gespeichert.</translation>
    </message>
    <message>
        <source>The file of the saved printers cannot be written: %1</source>
        <translation>Die Datei mit den gespeicherten Druckern kann nicht geschrieben werden: %1</translation>
    </message>
    <message>
        <source>The file of the saved printers cannot be read: %1</source>
        <translation>Die Datei mit den gespeicherten Druckern kann nicht gelesen werden: %1</translation>
    </message>
    <message>
        <source>The certificate of %1 cannot be checked: %2</source>
        <translation>Das Zertifikat von %1 lässt sich nicht prüfen: %2</translation>
    </message>
    <message>
        <source>Looking for “%1” on the network…</source>
        <translation>„%1“ wird im Netz gesucht …</translation>
    </message>
    <message>
        <source>No printer named “%1” is announced on the network.</source>
        <translation>Kein Drucker namens „%1“ meldet sich im Netz.</translation>
    </message>
    <message>
        <source>Printers cannot be looked for on the network: %1.</source>
        <translation>Im Netz kann nicht nach Druckern gesucht werden: %1.</translation>
    </message>
</context>
<context>
    <name>zypanel::DropHint</name>
    <message>
        <source>Drop a sliced model here</source>
        <translation>Druckdatei hier ablegen</translation>
    </message>
    <message>
        <source>or choose one below</source>
        <translation>oder unten auswählen</translation>
    </message>
</context>
<context>
    <name>zypanel::EventLog</name>
    <message>
        <source>Events</source>
        <translation>Ereignisse</translation>
    </message>
    <message>
        <source>&amp;Copy all</source>
        <translation>Alles &amp;kopieren</translation>
    </message>
    <message>
        <source>C&amp;lear</source>
        <translation>&amp;Leeren</translation>
    </message>
</context>
<context>
    <name>zypanel::Formatting</name>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 min %2 s</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 von %2</translation>
    </message>
    <message>
        <source>%1/s</source>
        <translation>%1/s</translation>
    </message>
    <message>
        <source>%1 left</source>
        <translation>noch %1</translation>
    </message>
    <message>
        <source>%1 mm</source>
        <translation>%1 mm</translation>
    </message>
    <message>
        <source>%1 in %2</source>
        <translation>%1 in %2</translation>
    </message>
</context>
<context>
    <name>zypanel::LayerPlot</name>
    <message>
        <source>Layers over time</source>
        <translation>Schichten im Zeitverlauf</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 h</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
</context>
<context>
    <name>zypanel::MainWindow</name>
    <message>
        <source>Printer panel</source>
        <translation>Druckersteuerung</translation>
    </message>
    <message>
        <source>Fi&amp;le</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;Choose a model…</source>
        <translation>Druckdatei &amp;auswählen…</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>Ü&amp;ber</translation>
    </message>
    <message>
        <source>Printer panel %1</source>
        <translation>Druckersteuerung %1</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Sends sliced models to a networked resin printer and runs its prints.</source>
        <translation>Sendet Druckdateien an einen Harzdrucker im Netzwerk und steuert dessen Drucke.</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Beenden</translation>
    </message>
    <message>
        <source>A file is still being sent. Quit?</source>
        <translation>Es wird noch eine Datei gesendet. Beenden?</translation>
    </message>
    <message>
        <source>Sending the same file again later resumes it.</source>
        <translation>Wird dieselbe Datei später erneut gesendet, geht es an dieser Stelle weiter.</translation>
    </message>
    <message>
        <source>&amp;Go on sending</source>
        <translation>&amp;Weiter senden</translation>
    </message>
</context>
<context>
    <name>zypanel::NoticeStrip</name>
    <message>
        <source>Dismiss this message</source>
        <translation>Diese Meldung ausblenden</translation>
    </message>
</context>
<context>
    <name>zypanel::ParameterForm</name>
    <message>
        <source>Print parameters</source>
        <translation>Druckparameter</translation>
    </message>
    <message>
        <source>now %1</source>
        <translation>aktuell %1</translation>
    </message>
    <message>
        <source>Appl&amp;y</source>
        <translation>Über&amp;nehmen</translation>
    </message>
    <message>
        <source>Un&amp;do</source>
        <translation>&amp;Zurücksetzen</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>mm/min</source>
        <comment>the widest unit</comment>
        <translation>mm/min</translation>
    </message>
</context>
<context>
    <name>zypanel::PrintBox</name>
    <message>
        <source>Print</source>
        <translation>Druck</translation>
    </message>
    <message>
        <source>&amp;Start print</source>
        <translation>Dru&amp;ck starten</translation>
    </message>
    <message>
        <source>Layers printed</source>
        <translation>Gedruckte Schichten</translation>
    </message>
    <message>
        <source>File on the printer</source>
        <translation>Datei auf dem Drucker</translation>
    </message>
    <message>
        <source>Name of a file on the printer</source>
        <translation>Name einer Datei auf dem Drucker</translation>
    </message>
    <message>
        <source>File on pr&amp;inter</source>
        <translation>Druckdate&amp;i</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Nicht verbunden</translation>
    </message>
    <message>
        <source>Asking the printer…</source>
        <translation>Druckerstatus wird abgefragt …</translation>
    </message>
    <message>
        <source>layers of %1</source>
        <translation>Schichtdicke %1</translation>
    </message>
    <message>
        <source>No job</source>
        <translation>Kein Auftrag</translation>
    </message>
    <message>
        <source>%1 left</source>
        <translation>noch %1</translation>
    </message>
    <message>
        <source>Layer %1 of %2</source>
        <translation>Schicht %1 von %2</translation>
    </message>
    <message>
        <source>Stop the print</source>
        <translation>Druck stoppen</translation>
    </message>
    <message>
        <source>Stop printing %1?</source>
        <translation>Druck von %1 stoppen?</translation>
    </message>
    <message>
        <source>A stopped print cannot be continued; what is on the build plate is lost.</source>
        <translation>Ein gestoppter Druck kann nicht fortgesetzt werden. Was auf der Bauplattform ist, ist verloren.</translation>
    </message>
    <message>
        <source>&amp;Stop the print</source>
        <translation>Druck &amp;stoppen</translation>
    </message>
    <message>
        <source>&amp;Keep printing</source>
        <translation>&amp;Weiter drucken</translation>
    </message>
    <message>
        <source>Pa&amp;use</source>
        <translation>Pa&amp;use</translation>
    </message>
    <message>
        <source>Sto&amp;p…</source>
        <translation>Sto&amp;pp…</translation>
    </message>
    <message>
        <source>Co&amp;ntinue</source>
        <translation>Dru&amp;ck fortsetzen</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <translation>Verbindungsaufbau …</translation>
    </message>
    <message>
        <source>Connection lost</source>
        <translation>Verbindung verloren</translation>
    </message>
    <message>
        <source>No answer</source>
        <translation>Keine Antwort</translation>
    </message>
    <message>
        <source>Checking the file</source>
        <translation>Prüft die Datei</translation>
    </message>
    <message>
        <source>%1, as of %2</source>
        <translation>%1, Stand %2 Uhr</translation>
    </message>
</context>
<context>
    <name>zypanel::PrinterChoice</name>
    <message>
        <source>Printer</source>
        <translation>Drucker</translation>
    </message>
    <message>
        <source>A saved name, a printer found on the network, or an address such as ws://192.168.1.20:8080</source>
        <translation>Ein gespeicherter Name, ein im Netz gefundener Drucker oder eine Adresse, zum Beispiel ws://192.168.1.20:8080</translation>
    </message>
    <message>
        <source>ws://address:port or a saved name</source>
        <translation>ws://Adresse:Port oder ein gespeicherter Name</translation>
    </message>
    <message>
        <source>– found on the network –</source>
        <translation>– im Netz gefunden –</translation>
    </message>
</context>
<context>
    <name>zypanel::PrinterControl</name>
    <message>
        <source>Disconnected from %1.</source>
        <translation>Verbindung zu %1 getrennt.</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>Verbunden mit %1.</translation>
    </message>
    <message>
        <source>The connection to %1 was lost. It is opened again as soon as the printer answers.</source>
        <translation>Die Verbindung zu %1 ist abgebrochen. Sie wird wiederhergestellt, sobald der Drucker antwortet.</translation>
    </message>
    <message>
        <source>%1 answers again.</source>
        <translation>%1 antwortet wieder.</translation>
    </message>
    <message>
        <source>%1 does not answer at the moment. What is shown is from %2.</source>
        <translation>%1 antwortet zurzeit nicht. Die Anzeige ist auf dem Stand von %2 Uhr.</translation>
    </message>
    <message>
        <source>The printer speaks version “%1” of the protocol; this program knows version 1.</source>
        <translation>Der Drucker verwendet Version „%1“ des Protokolls; dieses Programm kennt nur Version 1.</translation>
    </message>
    <message>
        <source>%1 is checking %2.</source>
        <translation>%1 prüft %2.</translation>
    </message>
</context>
<context>
    <name>zypanel::PrinterPanel</name>
    <message>
        <source>Events</source>
        <translation>Ereignisse</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Verbindung trennen</translation>
    </message>
    <message>
        <source>A file is still being sent. Disconnect?</source>
        <translation>Es wird noch eine Datei gesendet. Verbindung trennen?</translation>
    </message>
    <message>
        <source>It can be resumed afterwards.</source>
        <translation>Das Senden kann danach fortgesetzt werden.</translation>
    </message>
    <message>
        <source>&amp;Disconnect</source>
        <translation>&amp;Trennen</translation>
    </message>
    <message>
        <source>&amp;Go on sending</source>
        <translation>&amp;Weiter senden</translation>
    </message>
    <message>
        <source>%1 % – %2</source>
        <translation>%1 % – %2</translation>
    </message>
    <message>
        <source>It is remembered until the panel is closed, or with the printer once that is saved.</source>
        <translation>Es bleibt gemerkt, bis das Fenster geschlossen wird, oder mit dem Drucker, sobald er gespeichert ist.</translation>
    </message>
    <message>
        <source>It is remembered with the saved printer.</source>
        <translation>Es wird beim gespeicherten Drucker gemerkt.</translation>
    </message>
    <message>
        <source>Unknown certificate</source>
        <translation>Unbekanntes Zertifikat</translation>
    </message>
    <message>
        <source>Nothing here knows the certificate of %1. Trust it?</source>
        <translation>Das Zertifikat von %1 ist hier unbekannt. Vertrauen Sie ihm?</translation>
    </message>
    <message>
        <source>Its SHA-256 fingerprint:

%1

Trust it only if that is the fingerprint that the printer, or who runs it, names.</source>
        <translation>Sein SHA-256-Fingerabdruck:

%1

Vertrauen Sie ihm nur, wenn der Drucker oder sein Betreiber denselben nennt.</translation>
    </message>
    <message>
        <source>&amp;Trust and remember</source>
        <translation>&amp;Vertrauen und merken</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
</context>
<context>
    <name>zypanel::SaveDialog</name>
    <message>
        <source>Save the access &amp;token, too</source>
        <translation>Auch das Zugriffs&amp;token speichern</translation>
    </message>
    <message>
        <source>Save printer</source>
        <translation>Drucker speichern</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>&amp;Name for %1:</source>
        <translation>&amp;Name für %1:</translation>
    </message>
    <message>
        <source>This name is that of the printer at %1, which is replaced.</source>
        <translation>Diesen Namen hat schon der Drucker unter %1. Er wird ersetzt.</translation>
    </message>
    <message>
        <source>Letters, digits, “-” and “_”, at most 64.</source>
        <translation>Buchstaben, Ziffern, „-“ und „_“, höchstens 64.</translation>
    </message>
    <message>
        <source>&amp;Replace</source>
        <translation>&amp;Ersetzen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
</context>
<context>
    <name>zypanel::TransferBox</name>
    <message>
        <source>Send a model</source>
        <translation>Druckdatei senden</translation>
    </message>
    <message>
        <source>Ch&amp;oose…</source>
        <translation>Aus&amp;wählen…</translation>
    </message>
    <message>
        <source>S&amp;end</source>
        <translation>S&amp;enden</translation>
    </message>
    <message>
        <source>File to send</source>
        <translation>Zu sendende Datei</translation>
    </message>
    <message>
        <source>Name on the printer</source>
        <translation>Name auf dem Drucker</translation>
    </message>
    <message>
        <source>Sent</source>
        <translation>Gesendet</translation>
    </message>
    <message>
        <source>Send only what is missing on the printer</source>
        <translation>Nur senden, was auf dem Drucker noch fehlt</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>D&amp;atei</translation>
    </message>
    <message>
        <source>Choose a sliced model</source>
        <translation>Druckdatei auswählen</translation>
    </message>
    <message>
        <source>Waiting for the printer…</source>
        <translation>Warten auf den Drucker …</translation>
    </message>
    <message>
        <source>Cancelling…</source>
        <translation>Wird abgebrochen …</translation>
    </message>
    <message>
        <source>Interrupted at %1 of %2</source>
        <translation>Unterbrochen bei %1 von %2</translation>
    </message>
    <message>
        <source>Interrupted before the start</source>
        <translation>Vor dem Beginn unterbrochen</translation>
    </message>
    <message>
        <source>C&amp;ancel</source>
        <translation>A&amp;bbrechen</translation>
    </message>
    <message>
        <source>Cancel sending</source>
        <translation>Senden abbrechen</translation>
    </message>
    <message>
        <source>Cancel sending %1?</source>
        <translation>Senden von %1 abbrechen?</translation>
    </message>
    <message>
        <source>The printer deletes what it has received, so that it cannot be resumed.</source>
        <translation>Der Drucker löscht den empfangenen Teil; das Senden kann dann nicht fortgesetzt werden.</translation>
    </message>
    <message>
        <source>&amp;Cancel sending</source>
        <translation>Senden a&amp;bbrechen</translation>
    </message>
    <message>
        <source>&amp;Go on sending</source>
        <translation>&amp;Weiter senden</translation>
    </message>
    <message>
        <source>R&amp;esume</source>
        <translation>F&amp;ortsetzen</translation>
    </message>
    <message>
        <source>Na&amp;me on printer</source>
        <translation>Zielna&amp;me</translation>
    </message>
    <message>
        <source>Disc&amp;ard</source>
        <translation>V&amp;erwerfen</translation>
    </message>
    <message>
        <source>The printer is checking the file…</source>
        <translation>Der Drucker prüft die Datei …</translation>
    </message>
    <message>
        <source>Sent: %1</source>
        <translation>Gesendet: %1</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Abgebrochen</translation>
    </message>
    <message>
        <source>Not sent</source>
        <translation>Nicht gesendet</translation>
    </message>
    <message>
        <source>%1 of %2, no acknowledgement for %3</source>
        <translation>%1 von %2, seit %3 keine Bestätigung</translation>
    </message>
    <message>
        <source>Reading the file: %1 of %2</source>
        <translation>Die Datei wird gelesen: %1 von %2</translation>
    </message>
</context>
<context>
    <name>zypanel::Upload</name>
    <message>
        <source>%1 already holds %2 of %3; the rest is sent.</source>
        <translation>%1 hat schon %2 von %3; nur der Rest wird gesendet.</translation>
    </message>
    <message>
        <source>%1 was resumed, so %2 keeps the name under which it was first sent: %3.</source>
        <translation>%1 wurde fortgesetzt; %2 behält deshalb den Namen, unter dem die Datei zuerst gesendet wurde: %3.</translation>
    </message>
    <message>
        <source>%1 has the whole file by now; it cannot be cancelled any more.</source>
        <translation>%1 hat inzwischen die ganze Datei; abbrechen ist nicht mehr möglich.</translation>
    </message>
</context>
<context>
    <name>zypanel::Words</name>
    <message>
        <source>The print of %1 has started.</source>
        <translation>Der Druck von %1 hat begonnen.</translation>
    </message>
    <message>
        <source>%1 cannot be printed now: the printer is busy with a print, a file or a check.</source>
        <translation>%1 kann jetzt nicht gedruckt werden: Der Drucker ist mit einem Druck, einer Datei oder einer Prüfung beschäftigt.</translation>
    </message>
    <message>
        <source>%1 failed the printer&apos;s check: it is missing there, damaged, or made for another kind of printer.</source>
        <translation>%1 hat die Prüfung des Druckers nicht bestanden: Die Datei fehlt dort, ist beschädigt oder für ein anderes Druckermodell erstellt.</translation>
    </message>
    <message>
        <source>%1 is not printed: the printer rejected the access token.</source>
        <translation>%1 wird nicht gedruckt: Der Drucker hat das Zugriffstoken abgelehnt.</translation>
    </message>
    <message>
        <source>The printer has accepted the pause.</source>
        <translation>Der Drucker hält den Druck an.</translation>
    </message>
    <message>
        <source>The printer cannot pause now. Is it printing at all?</source>
        <translation>Der Drucker kann jetzt nicht anhalten. Druckt er überhaupt?</translation>
    </message>
    <message>
        <source>The print is not paused: the printer rejected the access token.</source>
        <translation>Der Druck wird nicht angehalten: Der Drucker hat das Zugriffstoken abgelehnt.</translation>
    </message>
    <message>
        <source>The printer stops the print.</source>
        <translation>Der Drucker stoppt den Druck.</translation>
    </message>
    <message>
        <source>The printer cannot stop now. Is it printing at all?</source>
        <translation>Der Drucker kann jetzt nicht stoppen. Druckt er überhaupt?</translation>
    </message>
    <message>
        <source>The print goes on: the printer rejected the access token.</source>
        <translation>Der Druck läuft weiter: Der Drucker hat das Zugriffstoken abgelehnt.</translation>
    </message>
    <message>
        <source>The printer did not accept the print parameters.</source>
        <translation>Der Drucker hat die Druckparameter nicht angenommen.</translation>
    </message>
    <message>
        <source>The print parameters are unchanged: the printer rejected the access token.</source>
        <translation>Die Druckparameter sind unverändert: Der Drucker hat das Zugriffstoken abgelehnt.</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Bereit</translation>
    </message>
    <message>
        <source>The printer is ready.</source>
        <translation>Der Drucker ist bereit.</translation>
    </message>
    <message>
        <source>Printing</source>
        <translation>Druckt</translation>
    </message>
    <message>
        <source>The printer is printing %1.</source>
        <translation>Der Drucker druckt %1.</translation>
    </message>
    <message>
        <source>Print complete</source>
        <translation>Druck fertig</translation>
    </message>
    <message>
        <source>The print of %1 is complete.</source>
        <translation>Der Druck von %1 ist fertig.</translation>
    </message>
    <message>
        <source>Print failed</source>
        <translation>Druck fehlgeschlagen</translation>
    </message>
    <message>
        <source>The print of %1 has failed. Look at the printer before you start another.</source>
        <translation>Der Druck von %1 ist fehlgeschlagen. Sehen Sie nach dem Drucker, bevor Sie den nächsten Druck starten.</translation>
    </message>
    <message>
        <source>Print ended</source>
        <translation>Druck beendet</translation>
    </message>
    <message>
        <source>The print of %1 has ended.</source>
        <translation>Der Druck von %1 ist beendet.</translation>
    </message>
    <message>
        <source>Finishing</source>
        <translation>Wird abgeschlossen</translation>
    </message>
    <message>
        <source>The print of %1 is being finished.</source>
        <translation>Der Druck von %1 wird abgeschlossen.</translation>
    </message>
    <message>
        <source>Access token rejected</source>
        <translation>Zugriffstoken abgelehnt</translation>
    </message>
    <message>
        <source>The printer rejected the access token. Enter the right one.</source>
        <translation>Der Drucker hat das Zugriffstoken abgelehnt. Geben Sie das richtige ein.</translation>
    </message>
    <message>
        <source>%1 did not answer in time. Check that the printer is switched on and that no firewall lies between.</source>
        <translation>%1 hat nicht rechtzeitig geantwortet. Ist der Drucker eingeschaltet, und liegt keine Firewall dazwischen?</translation>
    </message>
    <message>
        <source>There is no file %1.</source>
        <translation>Es gibt keine Datei %1.</translation>
    </message>
    <message>
        <source>%1 is not a file.</source>
        <translation>%1 ist keine Datei.</translation>
    </message>
    <message>
        <source>%1 cannot be read.</source>
        <translation>%1 kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>%1 is empty; there is nothing to send.</source>
        <translation>%1 ist leer; es gibt nichts zu senden.</translation>
    </message>
    <message>
        <source>The file needs a name on the printer.</source>
        <translation>Die Datei braucht einen Namen auf dem Drucker.</translation>
    </message>
    <message>
        <source>%1 is no name for a file on the printer: it must not contain a path.</source>
        <translation>%1 ist als Dateiname auf dem Drucker nicht möglich: Er darf keinen Pfad enthalten.</translation>
    </message>
    <message>
        <source>%1 is a name that the printer keeps for itself. Choose another.</source>
        <translation>Den Namen %1 braucht der Drucker selbst. Wählen Sie einen anderen.</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>Belichtung</translation>
    </message>
    <message>
        <source>Bottom exposure</source>
        <translation>Bodenbelichtung</translation>
    </message>
    <message>
        <source>Bottom layers</source>
        <translation>Bodenschichten</translation>
    </message>
    <message>
        <source>Light delay</source>
        <translation>Lichtverzögerung</translation>
    </message>
    <message>
        <source>Lift height</source>
        <translation>Hubhöhe</translation>
    </message>
    <message>
        <source>Lift speed</source>
        <translation>Hubgeschwindigkeit</translation>
    </message>
    <message>
        <source>State unknown</source>
        <translation>Zustand unbekannt</translation>
    </message>
    <message>
        <source>The printer does not say what it is doing.</source>
        <translation>Der Drucker meldet nicht, was er tut.</translation>
    </message>
    <message>
        <source>Paused</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>The print of %1 is paused.</source>
        <translation>Der Druck von %1 ist angehalten.</translation>
    </message>
    <message>
        <source>Coming to a halt</source>
        <translation>Wird angehalten</translation>
    </message>
    <message>
        <source>The print of %1 is coming to a halt.</source>
        <translation>Der Druck von %1 wird angehalten.</translation>
    </message>
    <message>
        <source>%1 is on %2 and ready to print.</source>
        <translation>%1 ist auf %2 und kann gedruckt werden.</translation>
    </message>
    <message>
        <source>%1 is on %2, which did not say whether it can print it.</source>
        <translation>%1 ist auf %2. Ob die Datei gedruckt werden kann, hat der Drucker nicht gesagt.</translation>
    </message>
    <message>
        <source>Sending %1 was cancelled; %2 has deleted what it had received.</source>
        <translation>Das Senden von %1 wurde abgebrochen; %2 hat den empfangenen Teil gelöscht.</translation>
    </message>
    <message>
        <source>Sending %1 was cancelled, but %2 did not confirm that. It may keep what it has received.</source>
        <translation>Das Senden von %1 wurde abgebrochen, aber %2 hat das nicht bestätigt. Der empfangene Teil ist vielleicht noch dort.</translation>
    </message>
    <message>
        <source>The printer gave an answer that makes no sense.</source>
        <translation>Der Drucker hat unverständlich geantwortet.</translation>
    </message>
    <message>
        <source>%1 is on %2, which says that it is not a model that it can print.</source>
        <translation>%1 ist auf %2, aber laut Drucker kein Modell, das er drucken kann.</translation>
    </message>
    <message>
        <source>%1 was not sent: %2 is still receiving a file. It may be an interrupted one; try again in a moment.</source>
        <translation>%1 wurde nicht gesendet: %2 empfängt noch eine Datei, vielleicht eine unterbrochene. Versuchen Sie es gleich noch einmal.</translation>
    </message>
    <message>
        <source>%1 was not sent: %2 is checking a file that is to be printed. Try again in a moment.</source>
        <translation>%1 wurde nicht gesendet: %2 prüft gerade eine Datei vor dem Druck. Versuchen Sie es gleich noch einmal.</translation>
    </message>
    <message>
        <source>%1 was not sent: %2 does not accept files now.</source>
        <translation>%1 wurde nicht gesendet: %2 nimmt zurzeit keine Dateien an.</translation>
    </message>
    <message>
        <source>%1 was not sent: %2 accepts files only with an access token, and files are sent without one. Its settings have to allow that.</source>
        <translation>%1 wurde nicht gesendet: %2 nimmt Dateien nur mit Zugriffstoken an, sie werden aber ohne gesendet. Das lässt sich nur in den Einstellungen des Druckers ändern.</translation>
    </message>
    <message>
        <source>%2 cannot store %1. Its storage may be full or write-protected.</source>
        <translation>%2 kann %1 nicht speichern. Vielleicht ist der Speicher des Druckers voll oder schreibgeschützt.</translation>
    </message>
    <message>
        <source>%1 was not sent: the answers of %2 make no sense. It may need new firmware.</source>
        <translation>%1 wurde nicht gesendet: %2 antwortet widersprüchlich. Vielleicht braucht der Drucker neue Firmware.</translation>
    </message>
    <message>
        <source>Sending %1 was ended too late to cancel it: %2 may have the whole file.</source>
        <translation>Das Senden von %1 war zu weit, um es abzubrechen: %2 hat vielleicht die ganze Datei.</translation>
    </message>
    <message>
        <source>The connection to %2 was lost while %1 was being sent. Resume sends only what is missing.</source>
        <translation>Die Verbindung zu %2 ist beim Senden von %1 abgebrochen. „Fortsetzen“ sendet nur, was noch fehlt.</translation>
    </message>
    <message>
        <source>%2 has stopped answering while %1 was being sent. Resume sends only what is missing.</source>
        <translation>%2 antwortet beim Senden von %1 nicht mehr. „Fortsetzen“ sendet nur, was noch fehlt.</translation>
    </message>
    <message>
        <source>%2 has received %1 but does not say what its check found. Sending it again asks once more.</source>
        <translation>%2 hat %1 empfangen, meldet aber kein Ergebnis der Prüfung. Nochmaliges Senden fragt erneut.</translation>
    </message>
    <message>
        <source>The address of %1 is not that of a printer.</source>
        <translation>Die Adresse von %1 ist keine Druckeradresse.</translation>
    </message>
    <message>
        <source>No printer answers at %1: the connection was refused. Check the address and the port, and that the printer is switched on.</source>
        <translation>Unter %1 antwortet kein Drucker: Die Verbindung wurde abgelehnt. Stimmen Adresse und Port, und ist der Drucker eingeschaltet?</translation>
    </message>
    <message>
        <source>The network knows no %1. Check how the address is spelled.</source>
        <translation>%1 ist im Netz nicht bekannt. Ist die Adresse richtig geschrieben?</translation>
    </message>
    <message>
        <source>No encrypted connection to %1 is possible. Its certificate may not be trusted here.</source>
        <translation>Eine verschlüsselte Verbindung zu %1 ist nicht möglich. Vielleicht gilt das Zertifikat des Druckers hier nicht als vertrauenswürdig.</translation>
    </message>
    <message>
        <source>What answers at %1 is not a printer. Check the address and the port.</source>
        <translation>Was unter %1 antwortet, ist kein Drucker. Stimmen Adresse und Port?</translation>
    </message>
    <message>
        <source>No connection to %1 is possible.</source>
        <translation>Eine Verbindung zu %1 ist nicht möglich.</translation>
    </message>
    <message>
        <source>%1 has changed while it was being sent. Send it again.</source>
        <translation>%1 hat sich während des Sendens geändert. Senden Sie die Datei noch einmal.</translation>
    </message>
    <message>
        <source>%1 is no name for a file on the printer: it stands for a folder.</source>
        <translation>%1 ist als Dateiname auf dem Drucker nicht möglich: Der Name steht für einen Ordner.</translation>
    </message>
    <message>
        <source>%1 is no name for a file on the printer: it contains a control character.</source>
        <translation>%1 ist als Dateiname auf dem Drucker nicht möglich: Er enthält ein Steuerzeichen.</translation>
    </message>
    <message>
        <source>%1 is too long for a name on the printer.</source>
        <translation>%1 ist als Dateiname auf dem Drucker zu lang.</translation>
    </message>
    <message>
        <source>The printer has not answered whether it prints %1. It may still start it.</source>
        <translation>Der Drucker hat nicht geantwortet, ob er %1 druckt. Der Druck kann trotzdem noch beginnen.</translation>
    </message>
    <message>
        <source>The connection was lost before the printer said whether it prints %1. It may still start it.</source>
        <translation>Die Verbindung ist abgebrochen, bevor der Drucker auf den Druck von %1 geantwortet hat. Der Druck kann trotzdem noch beginnen.</translation>
    </message>
    <message>
        <source>The print of %1 goes on.</source>
        <translation>Der Druck von %1 geht weiter.</translation>
    </message>
    <message>
        <source>The print of %1 cannot go on now.</source>
        <translation>Der Druck von %1 kann jetzt nicht fortgesetzt werden.</translation>
    </message>
    <message>
        <source>The print of %1 cannot go on: the file is missing on the printer, or it is damaged.</source>
        <translation>Der Druck von %1 kann nicht fortgesetzt werden: Die Datei fehlt auf dem Drucker oder ist beschädigt.</translation>
    </message>
    <message>
        <source>The print of %1 does not go on: the printer rejected the access token.</source>
        <translation>Der Druck von %1 wird nicht fortgesetzt: Der Drucker hat das Zugriffstoken abgelehnt.</translation>
    </message>
    <message>
        <source>The printer has not answered whether the print of %1 goes on. It may still do so.</source>
        <translation>Der Drucker hat nicht geantwortet, ob der Druck von %1 weitergeht. Er kann trotzdem noch weitergehen.</translation>
    </message>
    <message>
        <source>The connection was lost before the printer said whether the print of %1 goes on. It may still do so.</source>
        <translation>Die Verbindung ist abgebrochen, bevor der Drucker auf das Fortsetzen von %1 geantwortet hat. Der Druck kann trotzdem noch weitergehen.</translation>
    </message>
    <message>
        <source>The printer has not answered to the pause. It cannot be taken back: the printer may still pause, later than you want.</source>
        <translation>Der Drucker hat auf die Pause nicht geantwortet. Sie lässt sich nicht zurücknehmen: Er kann noch pausieren, auch später als gewünscht.</translation>
    </message>
    <message>
        <source>The connection was lost before the printer answered to the pause. It may still pause.</source>
        <translation>Die Verbindung ist abgebrochen, bevor der Drucker auf die Pause geantwortet hat. Er kann trotzdem noch pausieren.</translation>
    </message>
    <message>
        <source>The printer has not answered to the stop. It cannot be taken back: the printer may still stop the print. If that matters, use its own switch.</source>
        <translation>Der Drucker hat auf das Stoppen nicht geantwortet. Es lässt sich nicht zurücknehmen: Er kann den Druck noch stoppen. Im Zweifel am Drucker selbst ausschalten.</translation>
    </message>
    <message>
        <source>The connection was lost before the printer answered to the stop. It may still stop the print.</source>
        <translation>Die Verbindung ist abgebrochen, bevor der Drucker auf das Stoppen geantwortet hat. Er kann den Druck trotzdem noch stoppen.</translation>
    </message>
    <message>
        <source>The printer uses the new print parameters.</source>
        <translation>Der Drucker verwendet die neuen Druckparameter.</translation>
    </message>
    <message>
        <source>The printer keeps values of its own for: %1.</source>
        <translation>Der Drucker behält seine Werte für: %1.</translation>
    </message>
    <message>
        <source>The printer has not answered to the print parameters. It may still take them.</source>
        <translation>Der Drucker hat auf die Druckparameter nicht geantwortet. Er kann sie trotzdem noch übernehmen.</translation>
    </message>
    <message>
        <source>The connection was lost before the printer confirmed the print parameters.</source>
        <translation>Die Verbindung ist abgebrochen, bevor der Drucker die Druckparameter bestätigt hat.</translation>
    </message>
    <message>
        <source>s</source>
        <translation>s</translation>
    </message>
    <message>
        <source>mm</source>
        <translation>mm</translation>
    </message>
    <message>
        <source>mm/min</source>
        <translation>mm/min</translation>
    </message>
    <message>
        <source>Nothing here vouches for the certificate of %1, so nothing was sent to it.</source>
        <translation>Für das Zertifikat von %1 bürgt hier niemand; es wurde nichts dorthin gesendet.</translation>
    </message>
    <message>
        <source>The certificate of %1 has changed! Another device may pose as the printer, so nothing was sent to it. If the printer has a new certificate, forget the printer and connect to its address again.</source>
        <translation>Das Zertifikat von %1 hat sich geändert! Ein anderes Gerät könnte sich als der Drucker ausgeben; es wurde nichts dorthin gesendet. Hat der Drucker ein neues Zertifikat, dann vergessen Sie den Drucker und verbinden Sie sich neu mit seiner Adresse.</translation>
    </message>
    <message>
        <source>%2 did not get %1 as it is here, or finds it no model that it can print. Send it again.</source>
        <translation>%2 hat %1 anders erhalten, als es hier ist, oder kann es nicht drucken. Senden Sie es noch einmal.</translation>
    </message>
</context>
</TS>
