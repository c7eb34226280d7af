<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name></name>
    <message id="WelcomeWhat">
        <source></source>
        <translation>Zeigt, was ein Finanzprogramm plant: Zahlungen und Einnahmen, die überfällig sind, heute oder in den nächsten Tagen fällig werden.</translation>
    </message>
    <message id="WelcomeFolder">
        <source></source>
        <translation>Die Liste erscheint, sobald das Programm sie in diesem Ordner ablegt:</translation>
    </message>
    <message id="WelcomeDocumentation">
        <source></source>
        <translation>Wie ein Programm sich verbindet, beschreibt die Dokumentation von Korvel Today.</translation>
    </message>
    <message id="WelcomeFound">
        <source></source>
        <translation>Wähle eine Datei, um zu sehen, was darin geplant ist:</translation>
    </message>
    <message id="WelcomeOnlyRead">
        <source></source>
        <translation>Die Datei wird nur gelesen, nie verändert.</translation>
    </message>
    <message id="WelcomeReading">
        <source></source>
        <translation>Datei wird gelesen …</translation>
    </message>
    <message id="WelcomeShowFile">
        <source></source>
        <translation>%1 anzeigen, %2</translation>
    </message>
    <message id="TodayViewEmtyText">
        <source></source>
        <translation>Nichts fällig</translation>
    </message>
    <message id="ShowAllTitle">
        <source></source>
        <translation>Alle anzeigen …</translation>
    </message>
    <message id="ResheduleTomorrow">
        <source></source>
        <translation>Morgen</translation>
    </message>
    <message id="Reshedule3Days">
        <source></source>
        <translation>In 3 Tagen</translation>
    </message>
    <message id="ResheduleNextWeek">
        <source></source>
        <translation>Nächste Woche</translation>
    </message>
    <message id="DeleteFutureEnteres">
        <source></source>
        <translation>Diesen und alle künftigen Einträge</translation>
    </message>
    <message id="DeleteCurrentPlanButtonTitle">
        <source></source>
        <translation>Nur diesen Eintrag</translation>
    </message>
    <message id="CancelButtonTitle">
        <source></source>
        <translation>Abbrechen</translation>
    </message>
    <message id="FailureTitle">
        <source></source>
        <translation>Die Liste konnte nicht geladen werden</translation>
    </message>
    <message id="FailureText">
        <source></source>
        <translation>Deine Daten sind unberührt. Korvel Today versucht es von selbst wieder, auch sobald sich im gemeinsamen Ordner etwas ändert.</translation>
    </message>
    <message id="FailureTryAgain">
        <source></source>
        <translation>Erneut versuchen</translation>
    </message>
    <message id="FailureExplain">
        <source></source>
        <translation>Was stimmt nicht?</translation>
    </message>
    <message id="PaidButtonHelp">
        <source></source>
        <translation>Als bezahlt markieren</translation>
    </message>
    <message id="LaterButtonHelp">
        <source></source>
        <translation>Verschieben</translation>
    </message>
    <message id="InfoButtonHelp">
        <source></source>
        <translation>Öffnen</translation>
    </message>
    <message id="DeleteButtonHelp">
        <source></source>
        <translation>Löschen</translation>
    </message>
    <message id="AddButtonHelp">
        <source></source>
        <translation>Buchung hinzufügen</translation>
    </message>
    <message id="OverdueDescription">
        <source></source>
        <translation>überfällig</translation>
    </message>
    <message id="OpenRowDescription">
        <source></source>
        <translation>Aktionen sichtbar</translation>
    </message>
    <message id="OverdueCountText">
        <source></source>
        <translation>%L1 überfällig</translation>
    </message>
    <message id="DueTodayCountText">
        <source></source>
        <translation>%L1 heute fällig</translation>
    </message>
    <message id="BothCountsText">
        <source></source>
        <translation>%1, %2</translation>
    </message>
    <message id="NothingIsDueText">
        <source></source>
        <translation>Nichts ist fällig</translation>
    </message>
    <message id="TrayShowTitle">
        <source></source>
        <translation>Anzeigen</translation>
    </message>
    <message id="TrayAddTitle">
        <source></source>
        <translation>Buchung hinzufügen</translation>
    </message>
    <message id="TrayOpenApplicationTitle">
        <source></source>
        <translation>Finanzprogramm öffnen</translation>
    </message>
    <message id="TrayShowFolderTitle">
        <source></source>
        <translation>Gemeinsamen Ordner anzeigen</translation>
    </message>
    <message id="TrayQuitTitle">
        <source></source>
        <translation>Beenden</translation>
    </message>
    <message id="NotificationOpenTitle">
        <source></source>
        <translation>Öffnen</translation>
    </message>
    <message id="NotificationNotTodayTitle">
        <source></source>
        <translation>Heute nicht</translation>
    </message>
</context>
</TS>
