<?xml version="1.0" encoding="utf-8"?>

<!--
SPDX-FileCopyrightText: 2026 The velmora-share developers

SPDX-License-Identifier: MIT
-->

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
    <message>
        <source>not an absolute path</source>
        <extracomment>Why an attachment a mail link asks for is not attached.</extracomment>
        <translation>non è un percorso assoluto</translation>
    </message>
    <message>
        <source>a hidden file or folder</source>
        <extracomment>Why an attachment a mail link asks for is not attached.</extracomment>
        <translation>un file o una cartella nascosti</translation>
    </message>
    <message>
        <source>no such file or folder</source>
        <extracomment>Why an attachment a mail link asks for is not attached.</extracomment>
        <translation>file o cartella inesistente</translation>
    </message>
    <message>
        <source>a link to a hidden file or folder</source>
        <extracomment>Why an attachment a mail link asks for is not attached.</extracomment>
        <translation>un collegamento a un file o a una cartella nascosti</translation>
    </message>
    <message>
        <source>in the system folder %1</source>
        <extracomment>Why an attachment a mail link asks for is not attached: it lies under %1, such as /etc.</extracomment>
        <translation>nella cartella di sistema %1</translation>
    </message>
    <message>
        <source>in the shared container</source>
        <extracomment>Why an attachment a mail link asks for is not attached: it lies in the folder shared with the mail application.</extracomment>
        <translation>nel contenitore condiviso</translation>
    </message>
    <message>
        <source>not a regular file or folder</source>
        <extracomment>Why an attachment a mail link asks for is not attached.</extracomment>
        <translation>non è un file regolare né una cartella</translation>
    </message>
    <message>
        <source>not readable</source>
        <extracomment>Why an attachment a mail link asks for is not attached.</extracomment>
        <translation>non leggibile</translation>
    </message>
    <message>
        <source>not a mailto: URI: %1</source>
        <extracomment>Error reading a mail link (%1).</extracomment>
        <translation>non è un URI mailto: %1</translation>
    </message>
    <message>
        <source>malformed mailto: URI (%1): %2</source>
        <extracomment>Error reading a mail link: %1 says what is wrong, %2 is the link.</extracomment>
        <translation>URI mailto: malformato (%1): %2</translation>
    </message>
    <message>
        <source>bad escape or not UTF-8 in "%1"</source>
        <extracomment>What is wrong in a mail link: the part %1 of it.</extracomment>
        <translation>sequenza di escape errata o testo non UTF-8 in "%1"</translation>
    </message>
    <message>
        <source>cannot open %1</source>
        <extracomment>A file (%1) cannot be opened; the system's reason follows.</extracomment>
        <translation>impossibile aprire %1</translation>
    </message>
    <message>
        <source>cannot read %1</source>
        <extracomment>A file (%1) cannot be read; the system's reason follows.</extracomment>
        <translation>impossibile leggere %1</translation>
    </message>
    <message>
        <source>cannot read %1: not a regular file</source>
        <extracomment>A file (%1) is a pipe, device or folder.</extracomment>
        <translation>impossibile leggere %1: non è un file regolare</translation>
    </message>
    <message>
        <source>cannot read %1: %2</source>
        <extracomment>A file (%1) cannot be read; %2 is the reason.</extracomment>
        <translation>impossibile leggere %1: %2</translation>
    </message>
    <message>
        <source>not a well-formed URL: %1</source>
        <extracomment>Command-line error: the item %1 looks like a URL but is not one.</extracomment>
        <translation>URL non valido: %1</translation>
    </message>
    <message>
        <source>no such file or folder: %1</source>
        <extracomment>Command-line error: the item %1 names nothing.</extracomment>
        <translation>file o cartella inesistente: %1</translation>
    </message>
    <message>
        <source>Usage: velmora-share [OPTIONS] [ITEM...]
Open the Velmora share composer pre-filled with the items; Send hands the message to the
Velmora mail application.

Items:
  FILE              an existing file or folder, attached as a copy
  URL               an absolute URL with a scheme, shared as a link (file: URLs are files)
  mailto:...        a mail link, read as a message to compose: recipients, subject, body,
                    and attachments checked as docs/mailto.md describes
  -                 standard input: image data when it decodes as an image, else text

Options:
  --title TEXT      the share's title (a shared web link makes it the subject)
  --text TEXT       rich text shared with the items (HTML, or plain text)
  --image FILE      share FILE's bytes as image data (staged as PNG); repeatable
  --container DIR   the shared container (overrides VELMORA_GROUP_CONTAINER)
  --bundle-id ID    this program's bundle identifier (overrides VELMORA_BUNDLE_ID)
  --headless        no window: fill the composer from the options below, then send
  --from ADDR       choose the From item titled ADDR (headless)
  --to ADDR         add a recipient as a user would; repeatable (headless)
  --cc ADDR         add a Cc recipient; repeatable (headless)
  --bcc ADDR        add a Bcc recipient; repeatable (headless)
  --subject TEXT    the subject (headless)
  --body TEXT       the body's text, replacing what the share put there (headless)
  --cancel          cancel instead of sending (headless)
  --print-url       print every command URL on standard output instead of opening it
  --screenshot FILE write a PNG of the composer once the shared items are taken in
  -h, --help        show this help and exit
  --version         show the version and exit

Exit status:
  0  sent, with every item given attached
  1  cancelled (Cancel, --cancel, or the window closed)
  2  bad usage, or no display to open the window on (said on standard error)
  3  headless: the message is complete, but the mail application could not be launched
  4  sent, but some items could not be attached (each named on standard error)
</source>
        <extracomment>The text of --help. Keep the option names and the alignment; one option a line.</extracomment>
        <translation>Uso: velmora-share [OPZIONI] [ELEMENTO...]
Apre la finestra di condivisione di Velmora già compilata con gli elementi; Invia passa il
messaggio all'applicazione di posta Velmora.

Elementi:
  FILE              un file o una cartella esistente, allegato come copia
  URL               un URL assoluto con uno schema, condiviso come link (gli URL file: sono file)
  mailto:...        un link di posta, letto come messaggio da comporre: destinatari, oggetto,
                    testo e allegati controllati come descritto in docs/mailto.md
  -                 lo standard input: dati di immagine se si decodificano come immagine,
                    altrimenti testo

Opzioni:
  --title TESTO     il titolo della condivisione (un link web condiviso lo rende l'oggetto)
  --text TESTO      testo formattato condiviso con gli elementi (HTML o testo semplice)
  --image FILE      condivide i byte di FILE come dati di immagine (copiati come PNG); ripetibile
  --container DIR   il contenitore condiviso (ha la precedenza su VELMORA_GROUP_CONTAINER)
  --bundle-id ID    l'identificatore di bundle (ha la precedenza su VELMORA_BUNDLE_ID)
  --headless        senza finestra: compila il messaggio con le opzioni seguenti, poi lo invia
  --from IND        sceglie la voce Da intitolata IND (headless)
  --to IND          aggiunge un destinatario come farebbe un utente; ripetibile (headless)
  --cc IND          aggiunge un destinatario in Cc; ripetibile (headless)
  --bcc IND         aggiunge un destinatario in Ccn; ripetibile (headless)
  --subject TESTO   l'oggetto (headless)
  --body TESTO      il testo del messaggio, al posto di quello della condivisione (headless)
  --cancel          annulla invece di inviare (headless)
  --print-url       scrive ogni URL di comando sullo standard output invece di aprirlo
  --screenshot FILE scrive un PNG della finestra quando gli elementi condivisi sono pronti
  -h, --help        mostra questo aiuto ed esce
  --version         mostra la versione ed esce

Stato di uscita:
  0  inviato, con tutti gli elementi indicati allegati
  1  annullato (Annulla, --cancel o finestra chiusa)
  2  uso errato, o nessuno schermo su cui aprire la finestra (detto sullo standard error)
  3  headless: il messaggio è completo, ma non è stato possibile avviare l'applicazione di posta
  4  inviato, ma alcuni elementi non sono stati allegati (ciascuno nominato sullo standard error)
</translation>
    </message>
    <message>
        <source>--%1 given more than once</source>
        <extracomment>Command-line error: %1 is an option's name.</extracomment>
        <translation>--%1 indicata più di una volta</translation>
    </message>
    <message>
        <source>--%1 needs --headless</source>
        <extracomment>Command-line error: %1 is an option's name.</extracomment>
        <translation>--%1 richiede --headless</translation>
    </message>
    <message>
        <source>standard input ('-') can be shared only once</source>
        <extracomment>Command-line error.</extracomment>
        <translation>lo standard input ('-') può essere condiviso una volta sola</translation>
    </message>
    <message>
        <source>no such image file: %1</source>
        <extracomment>Command-line error: %1 is the file given with --image.</extracomment>
        <translation>file immagine inesistente: %1</translation>
    </message>
    <message>
        <source>no From item titled %1: there are no accounts</source>
        <extracomment>Command-line error: --from %1 names no account, and there are none.</extracomment>
        <translation>nessuna voce Da intitolata %1: non ci sono account</translation>
    </message>
    <message>
        <source>no From item titled %1 (the items are: %2)</source>
        <extracomment>Command-line error: --from %1 names no account; %2 lists them.</extracomment>
        <translation>nessuna voce Da intitolata %1 (le voci sono: %2)</translation>
    </message>
    <message>
        <source>not a local file</source>
        <extracomment>Why an attachment a mail link asks for is not attached: it is a remote URL.</extracomment>
        <translation>non è un file locale</translation>
    </message>
    <message>
        <source>the mailto: URI asks for attachments that are not attached: %1</source>
        <extracomment>Command-line error (no window): %1 lists the attachments with their reasons.</extracomment>
        <translation>l'URI mailto: chiede allegati che non vengono allegati: %1</translation>
    </message>
    <message>
        <source>not attached: %1</source>
        <extracomment>On standard error: %1 lists attachments a mail link asked for, with their reasons.</extracomment>
        <translation>non allegati: %1</translation>
    </message>
    <message>
        <source>the message is complete, but the mail application (%1) could not be launched to send it</source>
        <extracomment>On standard error, with no window: %1 is the desktop entry's file name.</extracomment>
        <translation>il messaggio è completo, ma non è stato possibile avviare l'applicazione di posta (%1) per inviarlo</translation>
    </message>
    <message>
        <source>not attached: %1: %2</source>
        <extracomment>On standard error: an item (%1) that could not be attached, and why (%2).</extracomment>
        <translation>non allegato: %1: %2</translation>
    </message>
    <message>
        <source>could not write the screenshot to %1</source>
        <extracomment>On standard error: %1 is the file given with --screenshot.</extracomment>
        <translation>impossibile scrivere lo screenshot in %1</translation>
    </message>
    <message>
        <source>Try 'velmora-share --help'.</source>
        <extracomment>On standard error, after a command-line error: where to read how the program is used.</extracomment>
        <translation>Prova 'velmora-share --help'.</translation>
    </message>
    <message>
        <source>there is no display to show the composer on (%1); use --headless</source>
        <extracomment>Command-line error: no display; %1 says why (no X server, no Wayland compositor).</extracomment>
        <translation>non c'è uno schermo su cui mostrare la finestra (%1); usa --headless</translation>
    </message>
    <message>
        <source>the shared container cannot be created; give one with --container</source>
        <extracomment>Command-line error: the folder shared with the mail application cannot be made.</extracomment>
        <translation>il contenitore condiviso non può essere creato; indicane uno con --container</translation>
    </message>
    <message>
        <source>standard input cannot be read</source>
        <extracomment>Command-line error.</extracomment>
        <translation>lo standard input non può essere letto</translation>
    </message>
    <message>
        <source>standard input cannot be shared: %1</source>
        <extracomment>Command-line error: %1 says why (image data that does not decode).</extracomment>
        <translation>lo standard input non può essere condiviso: %1</translation>
    </message>
    <message>
        <source>not an image: %1</source>
        <extracomment>Command-line error: the file given with --image (%1) is not an image.</extracomment>
        <translation>non è un'immagine: %1</translation>
    </message>
</context>
</TS>
