<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>CommandField</name>
    <message>
        <source>Send</source>
        <translation>Senden</translation>
    </message>
    <message>
        <source>Waiting for the microphone</source>
        <translation>Wartet auf das Mikrofon</translation>
    </message>
    <message>
        <source>Speak a command</source>
        <translation>Befehl sprechen</translation>
    </message>
</context>
<context>
    <name>ListeningBar</name>
    <message>
        <source>Stop listening</source>
        <translation>Zuhören beenden</translation>
    </message>
</context>
<context>
    <name>Notice</name>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
</context>
<context>
    <name>StopButton</name>
    <message>
        <source>Stop</source>
        <translation>Stopp</translation>
    </message>
</context>
<context>
    <name>ZelvoraCommandSurface</name>
    <message>
        <source>Did I hear that right?</source>
        <translation>Habe ich das richtig verstanden?</translation>
    </message>
    <message>
        <source>Where would you like to go?</source>
        <translation>Wohin möchtest du?</translation>
    </message>
    <message>
        <source>Did you mean …</source>
        <translation>Meintest du …</translation>
    </message>
    <message>
        <source>May this app use the microphone?</source>
        <translation>Darf diese App das Mikrofon benutzen?</translation>
    </message>
    <message>
        <source>The microphone is switched off for this app</source>
        <translation>Das Mikrofon ist für diese App ausgeschaltet</translation>
    </message>
    <message>
        <source>No microphone can be used</source>
        <translation>Kein Mikrofon ist verfügbar</translation>
    </message>
    <message>
        <source>You said: “%1”</source>
        <translation>Du hast gesagt: „%1“</translation>
    </message>
    <message>
        <source>I heard “%1”. Change it below and send it, or try one of these.</source>
        <translation>Ich habe „%1“ verstanden. Ändere es unten und sende es, oder probiere eines davon.</translation>
    </message>
    <message>
        <source>Answer the system&apos;s question, then speak.</source>
        <translation>Beantworte die Frage des Systems und sprich dann.</translation>
    </message>
    <message>
        <source>Allow it in the system&apos;s settings and try again, or type what you want.</source>
        <translation>Erlaube es in den Einstellungen des Systems und versuche es erneut, oder tippe, was du möchtest.</translation>
    </message>
    <message>
        <source>Try saying</source>
        <translation>Sag zum Beispiel</translation>
    </message>
    <message>
        <source>Recent</source>
        <translation>Zuletzt</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>Ändern</translation>
    </message>
    <message>
        <source>Speak again</source>
        <translation>Noch einmal sprechen</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Type instead</source>
        <translation>Stattdessen tippen</translation>
    </message>
    <message>
        <source>Type a command</source>
        <translation>Befehl tippen</translation>
    </message>
    <message>
        <source>None of these</source>
        <translation>Nichts davon</translation>
    </message>
</context>
</TS>
