<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>Velmora</name>
    <message>
        <source>Bcc:</source>
        <extracomment>Heading of the blind-copy recipients that a shared mail link brought, shown under To.</extracomment>
        <translation>Ccn:</translation>
    </message>
    <message>
        <source>Cancel</source>
        <extracomment>A button: close the composer without sending, or go back from the empty-subject alert.</extracomment>
        <translation>Annulla</translation>
    </message>
    <message>
        <source>Cc:</source>
        <extracomment>Heading of the copy recipients that a shared mail link brought, shown under To.</extracomment>
        <translation>Cc:</translation>
    </message>
    <message>
        <source>Empty subject</source>
        <extracomment>Title of the alert shown on Send when the subject is empty.</extracomment>
        <translation>Oggetto vuoto</translation>
    </message>
    <message>
        <source>No Mail</source>
        <extracomment>Shown in the From menu for an account or alias that has no e-mail address.</extracomment>
        <translation>Nessun indirizzo email</translation>
    </message>
    <message>
        <source>No Name</source>
        <extracomment>Name of a contact group that has none.</extracomment>
        <translation>Senza nome</translation>
    </message>
    <message>
        <source>No subject</source>
        <extracomment>Subject of a message that has none.</extracomment>
        <translation>Senza oggetto</translation>
    </message>
    <message>
        <source>Not attached: %1</source>
        <extracomment>Notice under the recipients: files a mail link asked to attach that were left out for safety; %1 lists them.</extracomment>
        <translation>Non allegati: %1</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <extracomment>Tooltip and accessible name of the button that removes the Cc or Bcc recipient %1.</extracomment>
        <translation>Rimuovi %1</translation>
    </message>
    <message>
        <source>Send</source>
        <extracomment>A button: hand the message to Velmora to be sent.</extracomment>
        <translation>Invia</translation>
    </message>
    <message>
        <source>Send Anyway</source>
        <extracomment>A button of the empty-subject alert: send the message without a subject.</extracomment>
        <translation>Invia comunque</translation>
    </message>
    <message>
        <source>Share with Velmora</source>
        <extracomment>Title of the composer's window.</extracomment>
        <translation>Condividi con Velmora</translation>
    </message>
    <message>
        <source>Subject</source>
        <extracomment>Placeholder of the subject field.</extracomment>
        <translation>Oggetto</translation>
    </message>
    <message>
        <source>To:</source>
        <extracomment>Placeholder of the recipients field.</extracomment>
        <translation>A:</translation>
    </message>
    <message>
        <source>Your message has an empty subject.</source>
        <extracomment>Text of the empty-subject alert.</extracomment>
        <translation>Il messaggio non ha un oggetto.</translation>
    </message>
</context>
</TS>
