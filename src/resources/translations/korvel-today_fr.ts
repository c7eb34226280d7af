<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name></name>
    <message id="WelcomeWhat">
        <source></source>
        <translation>Affiche ce qu’un logiciel de finances a prévu : paiements et revenus en retard, à échéance aujourd’hui ou dans les prochains jours.</translation>
    </message>
    <message id="WelcomeFolder">
        <source></source>
        <translation>La liste apparaît dès que le logiciel la dépose dans ce dossier :</translation>
    </message>
    <message id="WelcomeDocumentation">
        <source></source>
        <translation>La documentation de Korvel Today explique comment un logiciel se connecte.</translation>
    </message>
    <message id="WelcomeFound">
        <source></source>
        <translation>Choisissez un fichier pour voir ce qui y est prévu :</translation>
    </message>
    <message id="WelcomeOnlyRead">
        <source></source>
        <translation>Le fichier est seulement lu, jamais modifié.</translation>
    </message>
    <message id="WelcomeReading">
        <source></source>
        <translation>Lecture du fichier…</translation>
    </message>
    <message id="WelcomeShowFile">
        <source></source>
        <translation>Afficher %1, %2</translation>
    </message>
    <message id="TodayViewEmtyText">
        <source></source>
        <translation>Rien à échéance</translation>
    </message>
    <message id="ShowAllTitle">
        <source></source>
        <translation>Tout afficher…</translation>
    </message>
    <message id="ResheduleTomorrow">
        <source></source>
        <translation>Demain</translation>
    </message>
    <message id="Reshedule3Days">
        <source></source>
        <translation>Dans 3 jours</translation>
    </message>
    <message id="ResheduleNextWeek">
        <source></source>
        <translation>La semaine prochaine</translation>
    </message>
    <message id="DeleteFutureEnteres">
        <source></source>
        <translation>Cette échéance et les suivantes</translation>
    </message>
    <message id="DeleteCurrentPlanButtonTitle">
        <source></source>
        <translation>Cette échéance seulement</translation>
    </message>
    <message id="CancelButtonTitle">
        <source></source>
        <translation>Annuler</translation>
    </message>
    <message id="FailureTitle">
        <source></source>
        <translation>La liste n’a pas pu être chargée</translation>
    </message>
    <message id="FailureText">
        <source></source>
        <translation>Vos données sont intactes. Korvel Today réessaie de lui-même, et dès que quelque chose change dans le dossier partagé.</translation>
    </message>
    <message id="FailureTryAgain">
        <source></source>
        <translation>Réessayer</translation>
    </message>
    <message id="FailureExplain">
        <source></source>
        <translation>Que se passe-t-il ?</translation>
    </message>
    <message id="PaidButtonHelp">
        <source></source>
        <translation>Marquer comme payée</translation>
    </message>
    <message id="LaterButtonHelp">
        <source></source>
        <translation>Reporter</translation>
    </message>
    <message id="InfoButtonHelp">
        <source></source>
        <translation>Ouvrir</translation>
    </message>
    <message id="DeleteButtonHelp">
        <source></source>
        <translation>Supprimer</translation>
    </message>
    <message id="AddButtonHelp">
        <source></source>
        <translation>Ajouter une opération</translation>
    </message>
    <message id="OverdueDescription">
        <source></source>
        <translation>en retard</translation>
    </message>
    <message id="OpenRowDescription">
        <source></source>
        <translation>actions affichées</translation>
    </message>
    <message id="OverdueCountText">
        <source></source>
        <translation>%L1 en retard</translation>
    </message>
    <message id="DueTodayCountText">
        <source></source>
        <translation>%L1 pour aujourd’hui</translation>
    </message>
    <message id="BothCountsText">
        <source></source>
        <translation>%1, %2</translation>
    </message>
    <message id="NothingIsDueText">
        <source></source>
        <translation>Rien n’est à échéance</translation>
    </message>
    <message id="TrayShowTitle">
        <source></source>
        <translation>Afficher</translation>
    </message>
    <message id="TrayAddTitle">
        <source></source>
        <translation>Ajouter une opération</translation>
    </message>
    <message id="TrayOpenApplicationTitle">
        <source></source>
        <translation>Ouvrir l’application de finances</translation>
    </message>
    <message id="TrayShowFolderTitle">
        <source></source>
        <translation>Afficher le dossier partagé</translation>
    </message>
    <message id="TrayQuitTitle">
        <source></source>
        <translation>Quitter</translation>
    </message>
    <message id="NotificationOpenTitle">
        <source></source>
        <translation>Ouvrir</translation>
    </message>
    <message id="NotificationNotTodayTitle">
        <source></source>
        <translation>Pas aujourd’hui</translation>
    </message>
</context>
</TS>
