# Tells Snakemake how a job of Slurm stands: running, success or failed. A job that Slurm has
# forgotten is looked up in its accounts; where none are kept it runs again, which is soon done.
state=$(scontrol --oneliner show job "$1" 2>&1)
case $state in
  *JobState=*) state=${state#*JobState=} ;;
  *"Invalid job id"*) state=$(sacct -n -X -P -o State -j "$1" 2>/dev/null) ;;
  *) state=RUNNING ;; # Slurm does not answer now
esac
case $state in
  COMPLETED*) echo success ;;
  PENDING* | CONFIGURING* | RUNNING* | COMPLETING* | SUSPENDED* | REQUEUE* | RESIZING* | STOPPED* | SIGNALING* | STAGE_OUT*) echo running ;;
  *) echo failed ;;
esac
