<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="he" sourcelanguage="en">
<context>
    <name>CommandField</name>
    <message>
        <source>Send</source>
        <translation>שליחה</translation>
    </message>
    <message>
        <source>Waiting for the microphone</source>
        <translation>ממתין למיקרופון</translation>
    </message>
    <message>
        <source>Speak a command</source>
        <translation>לומר פקודה</translation>
    </message>
</context>
<context>
    <name>ListeningBar</name>
    <message>
        <source>Stop listening</source>
        <translation>להפסיק להקשיב</translation>
    </message>
</context>
<context>
    <name>Notice</name>
    <message>
        <source>Close</source>
        <translation>סגירה</translation>
    </message>
</context>
<context>
    <name>StopButton</name>
    <message>
        <source>Stop</source>
        <translation>עצירה</translation>
    </message>
</context>
<context>
    <name>ZelvoraCommandSurface</name>
    <message>
        <source>Did I hear that right?</source>
        <translation>שמעתי נכון?</translation>
    </message>
    <message>
        <source>Where would you like to go?</source>
        <translation>לאן תרצו להגיע?</translation>
    </message>
    <message>
        <source>Did you mean …</source>
        <translation>התכוונת ל…</translation>
    </message>
    <message>
        <source>May this app use the microphone?</source>
        <translation>לאפשר לאפליקציה להשתמש במיקרופון?</translation>
    </message>
    <message>
        <source>The microphone is switched off for this app</source>
        <translation>המיקרופון כבוי לאפליקציה זו</translation>
    </message>
    <message>
        <source>No microphone can be used</source>
        <translation>אין מיקרופון זמין</translation>
    </message>
    <message>
        <source>You said: “%1”</source>
        <translation>אמרת: „%1“</translation>
    </message>
    <message>
        <source>I heard “%1”. Change it below and send it, or try one of these.</source>
        <translation>שמעתי „%1“. אפשר לשנות למטה ולשלוח, או לנסות אחת מאלה.</translation>
    </message>
    <message>
        <source>Answer the system&apos;s question, then speak.</source>
        <translation>ענו על שאלת המערכת ואז דברו.</translation>
    </message>
    <message>
        <source>Allow it in the system&apos;s settings and try again, or type what you want.</source>
        <translation>אפשרו אותו בהגדרות המערכת ונסו שוב, או הקלידו מה תרצו.</translation>
    </message>
    <message>
        <source>Try saying</source>
        <translation>נסו לומר</translation>
    </message>
    <message>
        <source>Recent</source>
        <translation>לאחרונה</translation>
    </message>
    <message>
        <source>Change</source>
        <translation>שינוי</translation>
    </message>
    <message>
        <source>Speak again</source>
        <translation>לדבר שוב</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>לנסות שוב</translation>
    </message>
    <message>
        <source>Type instead</source>
        <translation>להקליד במקום</translation>
    </message>
    <message>
        <source>Type a command</source>
        <translation>להקליד פקודה</translation>
    </message>
    <message>
        <source>None of these</source>
        <translation>אף אחת מאלה</translation>
    </message>
</context>
</TS>
