<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="it">
<context>
    <name></name>
    <message id="WelcomeWhat">
        <source></source>
        <translation>Mostra ciò che è pianificato in un programma di finanza: pagamenti ed entrate scaduti, in scadenza oggi o nei prossimi giorni.</translation>
    </message>
    <message id="WelcomeFolder">
        <source></source>
        <translation>L’elenco appare non appena il programma lo salva in questa cartella:</translation>
    </message>
    <message id="WelcomeDocumentation">
        <source></source>
        <translation>La documentazione di Korvel Today spiega come si collega un programma.</translation>
    </message>
    <message id="WelcomeFound">
        <source></source>
        <translation>Scegli un file per vedere che cosa vi è pianificato:</translation>
    </message>
    <message id="WelcomeOnlyRead">
        <source></source>
        <translation>Il file viene solo letto, mai modificato.</translation>
    </message>
    <message id="WelcomeReading">
        <source></source>
        <translation>Lettura del file…</translation>
    </message>
    <message id="WelcomeShowFile">
        <source></source>
        <translation>Mostra %1, %2</translation>
    </message>
    <message id="TodayViewEmtyText">
        <source></source>
        <translation>Nulla in scadenza</translation>
    </message>
    <message id="ShowAllTitle">
        <source></source>
        <translation>Mostra tutto…</translation>
    </message>
    <message id="ResheduleTomorrow">
        <source></source>
        <translation>Domani</translation>
    </message>
    <message id="Reshedule3Days">
        <source></source>
        <translation>Tra 3 giorni</translation>
    </message>
    <message id="ResheduleNextWeek">
        <source></source>
        <translation>La prossima settimana</translation>
    </message>
    <message id="DeleteFutureEnteres">
        <source></source>
        <translation>Questa voce e le successive</translation>
    </message>
    <message id="DeleteCurrentPlanButtonTitle">
        <source></source>
        <translation>Solo questa voce</translation>
    </message>
    <message id="CancelButtonTitle">
        <source></source>
        <translation>Annulla</translation>
    </message>
    <message id="FailureTitle">
        <source></source>
        <translation>Impossibile caricare l’elenco</translation>
    </message>
    <message id="FailureText">
        <source></source>
        <translation>I tuoi dati sono intatti. Korvel Today riprova da solo, e non appena qualcosa cambia nella cartella condivisa.</translation>
    </message>
    <message id="FailureTryAgain">
        <source></source>
        <translation>Riprova</translation>
    </message>
    <message id="FailureExplain">
        <source></source>
        <translation>Che cosa non va?</translation>
    </message>
    <message id="PaidButtonHelp">
        <source></source>
        <translation>Segna come pagato</translation>
    </message>
    <message id="LaterButtonHelp">
        <source></source>
        <translation>Rimanda</translation>
    </message>
    <message id="InfoButtonHelp">
        <source></source>
        <translation>Apri</translation>
    </message>
    <message id="DeleteButtonHelp">
        <source></source>
        <translation>Elimina</translation>
    </message>
    <message id="AddButtonHelp">
        <source></source>
        <translation>Aggiungi un movimento</translation>
    </message>
    <message id="OverdueDescription">
        <source></source>
        <translation>scaduto</translation>
    </message>
    <message id="OpenRowDescription">
        <source></source>
        <translation>azioni visibili</translation>
    </message>
    <message id="OverdueCountText">
        <source></source>
        <translation>%L1 in ritardo</translation>
    </message>
    <message id="DueTodayCountText">
        <source></source>
        <translation>%L1 per oggi</translation>
    </message>
    <message id="BothCountsText">
        <source></source>
        <translation>%1, %2</translation>
    </message>
    <message id="NothingIsDueText">
        <source></source>
        <translation>Nulla in scadenza</translation>
    </message>
    <message id="TrayShowTitle">
        <source></source>
        <translation>Mostra</translation>
    </message>
    <message id="TrayAddTitle">
        <source></source>
        <translation>Aggiungi un movimento</translation>
    </message>
    <message id="TrayOpenApplicationTitle">
        <source></source>
        <translation>Apri l’applicazione di finanza</translation>
    </message>
    <message id="TrayShowFolderTitle">
        <source></source>
        <translation>Mostra la cartella condivisa</translation>
    </message>
    <message id="TrayQuitTitle">
        <source></source>
        <translation>Esci</translation>
    </message>
    <message id="NotificationOpenTitle">
        <source></source>
        <translation>Apri</translation>
    </message>
    <message id="NotificationNotTodayTitle">
        <source></source>
        <translation>Non oggi</translation>
    </message>
</context>
</TS>
