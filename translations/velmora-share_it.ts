<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it" sourcelanguage="en">
<context>
    <name>Velmora</name>
    <message>
        <source>%1 copied</source>
        <extracomment>Under an item still being copied into the share, when its size is not known: how much is copied so far (%1, such as 12 MB).</extracomment>
        <translation>%1 copiati</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <extracomment>Under an item still being copied into the share: bytes copied of its size (12 MB of 340 MB).</extracomment>
        <translation>%1 di %2</translation>
    </message>
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
        <extracomment>Under a shared item that could not be attached, or under the recipients for files a mail link asked to attach that were left out for safety; %1 is the reason or the files.</extracomment>
        <translation>Non allegato: %1</translation>
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
        <source>Shared item</source>
        <extracomment>The name of a shared item still on its way whose name is not known yet.</extracomment>
        <translation>Elemento condiviso</translation>
    </message>
    <message>
        <source>Subject</source>
        <extracomment>Placeholder of the subject field.</extracomment>
        <translation>Oggetto</translation>
    </message>
    <message>
        <source>The desktop entry %1 is missing or its program cannot be started. Install or repair Velmora, then try again. Your message is kept.</source>
        <extracomment>The details of the alert shown when Send could not open the mail application; %1 is its desktop entry file name.</extracomment>
        <translation>La voce desktop %1 manca o il suo programma non si può avviare. Installa o ripara Velmora, poi riprova. Il messaggio è conservato.</translation>
    </message>
    <message>
        <source>To:</source>
        <extracomment>Placeholder of the recipients field.</extracomment>
        <translation>A:</translation>
    </message>
    <message>
        <source>Try Again</source>
        <extracomment>A button of the alert shown when Send could not open the mail application: open it again.</extracomment>
        <translation>Riprova</translation>
    </message>
    <message>
        <source>Velmora could not be opened to send your message.</source>
        <extracomment>Title of the alert shown when Send could not open the mail application.</extracomment>
        <translation>Impossibile aprire Velmora per inviare il messaggio.</translation>
    </message>
    <message>
        <source>Waiting for %1 files...</source>
        <extracomment>The Send button while it waits for %1 (two or more) shared files still being copied; pressing it again stops waiting.</extracomment>
        <translation>In attesa di %1 file...</translation>
    </message>
    <message>
        <source>Waiting for 1 file...</source>
        <extracomment>The Send button while it waits for one shared file still being copied; pressing it again stops waiting.</extracomment>
        <translation>In attesa di 1 file...</translation>
    </message>
    <message>
        <source>Waiting...</source>
        <extracomment>Under a shared item whose copy has not begun yet.</extracomment>
        <translation>In attesa...</translation>
    </message>
    <message>
        <source>Your message has an empty subject.</source>
        <extracomment>Text of the empty-subject alert.</extracomment>
        <translation>Il messaggio non ha un oggetto.</translation>
    </message>
    <message>
        <source>no Wayland compositor answers at %1</source>
        <extracomment>Command line: why the composer's window cannot open; %1 is the compositor's socket.</extracomment>
        <translation>nessun compositor Wayland risponde su %1</translation>
    </message>
    <message>
        <source>no X server answers at %1 (DISPLAY=%2)</source>
        <extracomment>Command line: why the composer's window cannot open; %1 is the X server's socket, %2 the DISPLAY value.</extracomment>
        <translation>nessun server X risponde su %1 (DISPLAY=%2)</translation>
    </message>
    <message>
        <source>the composer's window cannot be opened</source>
        <extracomment>Command line: Qt could not start a window system; the reason follows on the next line.</extracomment>
        <translation>la finestra del compositore non può essere aperta</translation>
    </message>
    <message>
        <source>DISPLAY is not set</source>
        <extracomment>Command line: why the composer's window cannot open on X11.</extracomment>
        <translation>DISPLAY non è impostata</translation>
    </message>
</context>
</TS>
